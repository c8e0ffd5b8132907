// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/PointOfSaleLink.h"

#include "base/Log.h"
#include "scale/ScaleCodes.h"
#include "scale/ScaleDelegate.h"
#include "scale/pointofsale/ScaleReading.h"
#include "scale/pointofsale/ScaleReport.h"
#include "scale/pointofsale/WeightConversion.h"
#include "scale/udev/UdevRule.h"

#include <array>
#include <cerrno>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// The kernel keeps no more of them for one reader; a scale that is quicker than the reading of
/// them does not hold the program.
constexpr int mostReports = 64;

/// The row that a unit has in the window.
std::optional<int> rowTag(WeightUnit unit, bool asPoundsAndOunces)
{
    switch (unit) {
    case WeightUnit::Gram: return unittag::grams;
    case WeightUnit::Kilogram: return unittag::kilograms;
    case WeightUnit::Ounce: return asPoundsAndOunces ? unittag::poundsOuncesA : unittag::ounces;
    case WeightUnit::Pound: return unittag::decimalPounds;
    default: return {};
    }
}

bool asksForPoundsAndOunces(int tag)
{
    return tag == unittag::poundsOuncesA || tag == unittag::poundsOuncesB ||
           tag == unittag::poundsWholeOunces;
}

} // namespace

PointOfSaleLink::PointOfSaleLink(std::function<bool()> roundsUp)
    : m_devices(ScaleApplication::sharedApplication()->devices())
    , m_roundsUp(std::move(roundsUp))
{
}

PointOfSaleLink::~PointOfSaleLink() = default;

ScaleDelegate *PointOfSaleLink::delegate()
{
    return ScaleApplication::sharedApplication()->delegate();
}

void PointOfSaleLink::attach(const FoundScale &scale)
{
    m_scale = scale;
    m_isHeld = false;
    m_unit = WeightUnit::Unknown;
    m_texts = {};
    logLine(QStringLiteral("Scale of the point-of-sale class at %1: %2")
                .arg(scale.device.node, scale.name));
    open();
    delegate()->setStatusString(true);
    delegate()->setIsDeviceAlive(true);
}

void PointOfSaleLink::open()
{
    m_connection = m_devices.openToRead(m_scale->device.node);
    m_hasPassedFirst = false;
    m_isSilent = false;
    m_latest.reset();
    m_sinceReport.start();
    const QString trouble = m_connection ? QString() : openTrouble();
    if (!m_connection)
        logLine(trouble);
    delegate()->setConnectionTrouble(trouble);
}

QString PointOfSaleLink::openTrouble() const
{
    const HidDeviceInfo &device = m_scale->device;
    if (m_devices.readingError(device.node) != EACCES)
        return QStringLiteral("The scale at %1 could not be opened: %2")
            .arg(device.node, m_devices.lastError());
    return QStringLiteral("No permission to open the scale at %1. Put this line into %2 and plug "
                          "the scale in again: %3")
        .arg(device.node, QLatin1String(udevRuleFile), udevRuleFor(device));
}

void PointOfSaleLink::retry()
{
    if (m_scale && !m_connection && m_devices.readingError(m_scale->device.node) == 0)
        open();
}

void PointOfSaleLink::detach()
{
    if (!m_scale)
        return;
    m_scale.reset();
    m_connection.reset();
    m_latest.reset();
    m_isSilent = false;
    m_isHeld = false;
    m_texts = {};
    delegate()->setConnectionTrouble({});
    delegate()->setUnitCaptionHidden(true);
    delegate()->setStatusString(false);
    delegate()->setIsDeviceAlive(false);
    delegate()->clearAll();
}

QString PointOfSaleLink::systemPath() const
{
    return m_scale ? m_scale->device.systemPath : QString();
}

bool PointOfSaleLink::reopenHandle()
{
    if (!m_scale)
        return false;
    open();
    return m_connection != nullptr;
}

QString PointOfSaleLink::silenceText() const
{
    return QStringLiteral("The scale sends nothing. It may have switched itself off: press its own "
                          "key. If it stays silent, unplug it and plug it in again.");
}

ScaleAbilities PointOfSaleLink::abilities() const
{
    const bool asBoth = asksForPoundsAndOunces(delegate()->selectedRadioButtonIndex());
    const bool isOunces = m_unit == WeightUnit::Ounce;
    return {.power = false,
            .tare = m_scale && m_scale->layout.zero,
            .blinksAtTare = false,
            .units = isOunces ? QList<int>{unittag::ounces, unittag::poundsOuncesA} : QList<int>(),
            .unitShown = rowTag(m_unit, asBoth)};
}

void PointOfSaleLink::setHeld(bool held)
{
    m_isHeld = held && m_latest;
}

void PointOfSaleLink::pressTare()
{
    if (!m_scale || !m_scale->layout.zero)
        return;
    const ZeroCommand &zero = *m_scale->layout.zero;
    std::vector<std::uint8_t> report(1 + zero.bytes);
    report[0] = zero.report;
    report.at(1 + zero.bit / 8) = static_cast<std::uint8_t>(1U << (zero.bit % 8));
    if (m_devices.sendOutputReport(m_scale->device.node, report) < 0)
        logLine(QStringLiteral("The scale could not be told to take its load for zero"));
}

std::optional<ScaleStatement> PointOfSaleLink::statementOf(std::span<const std::uint8_t> report)
{
    auto statement = readScaleReport(report, m_scale->layout);
    if (!statement)
        return std::nullopt;
    m_sinceReport.start();
    m_isSilent = false;
    if (!std::exchange(m_hasPassedFirst, true))
        return std::nullopt;
    if (statement->unit != WeightUnit::Unknown)
        m_unit = statement->unit;
    else if (statement->number.isZero())
        statement->unit = m_unit; // nothing is nothing in any unit
    return statement;
}

std::optional<ScaleStatement> PointOfSaleLink::newestStatement()
{
    std::optional<ScaleStatement> newest;
    std::array<std::uint8_t, 256> buffer{};
    for (int i = 0; m_connection && i < mostReports; ++i) {
        const auto received = m_connection->read(buffer, 0ms);
        if (!received || *received < 0)
            break;
        const auto statement =
            statementOf(std::span(buffer).first(static_cast<std::size_t>(*received)));
        if (statement)
            newest = statement;
    }
    return newest;
}

bool PointOfSaleLink::takeReading()
{
    retry();
    if (const auto statement = newestStatement())
        return take(*statement);
    m_isSilent = m_connection && m_sinceReport.elapsed() >= patience.count();
    return false;
}

bool PointOfSaleLink::take(const ScaleStatement &statement)
{
    if (!m_isHeld)
        m_latest = statement;
    const ScaleStatement &shown = *m_latest;
    logLine(QStringLiteral("Scale says: status %1, unit %2, %3%4e%5")
                .arg(static_cast<int>(statement.status))
                .arg(static_cast<int>(statement.unit))
                .arg(statement.number.isNegative ? QStringLiteral("-") : QString())
                .arg(statement.number.digits)
                .arg(statement.number.exponent));
    delegate()->takeReading(
        {.statement = shown,
         .isHeld = m_isHeld,
         .asPoundsAndOunces = asksForPoundsAndOunces(delegate()->selectedRadioButtonIndex()),
         .canTare = abilities().tare});

    m_form.form = exportForm(shown.unit);
    const auto rounding = m_roundsUp() ? ExportRounding::UpToWhole : ExportRounding::AsRead;
    const auto text = shown.isWeighed() ? exportText(shown, m_form.form, rounding) : std::nullopt;
    m_texts = text ? webStrings(shown).value_or(WebStrings()) : WebStrings();
    delegate()->setExportLabelText(text.value_or(QString()));
    if (text && delegate()->SetClip())
        delegate()->copyToClipboard(delegate()->exportLabelText());
    return text.has_value();
}
