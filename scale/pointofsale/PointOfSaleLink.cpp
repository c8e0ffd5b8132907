// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/pointofsale/PointOfSaleLink.h"

#include "base/Log.h"
#include "scale/ScaleCodes.h"
#include "scale/ScaleDelegate.h"
#include "scale/pointofsale/ScaleReading.h"
#include "scale/pointofsale/ScaleReport.h"
#include "scale/pointofsale/WeightConversion.h"

#include <array>
#include <utility>

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

/// The kernel keeps so many of them for one reader, and drops what comes after them.
constexpr int mostKept = 63;

/// A scale that is quicker than the reading of its reports does not hold the program.
constexpr int mostReports = 64;

/// What came within it is of now, though later reports are lost.
constexpr auto presentTime = 1s;

/// Between two tries to open a scale that does not work. Each that succeeds holds the program for
/// the 50 ms that the kernel waits in it.
constexpr auto retryInterval = 2s;

/// One alone may be the begin of a removal, of which nothing has been heard yet.
constexpr int toldFailures = 2;

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

void PointOfSaleLink::attach(const FoundScale &scale, OpenedScale opened)
{
    m_scale = scale;
    m_besides.clear();
    m_failures = 0;
    m_unit = WeightUnit::Unknown;
    m_asPoundsAndOunces = false;
    m_hasTareFailed = false;
    logLine(QStringLiteral("Scale of the point-of-sale class at %1: %2")
                .arg(scale.device.node, scale.name));
    use(std::move(opened));
    delegate()->setStatusString(true);
    delegate()->setIsDeviceAlive(true);
}

void PointOfSaleLink::use(OpenedScale opened)
{
    m_connection = std::move(opened.connection);
    m_trouble = opened.trouble;
    if (m_connection || m_devices.readingError(m_scale->device.node) == 0)
        m_sinceOpen.start();
    else
        m_sinceOpen.invalidate();
    forgetReadings();
    m_rhythm.begin();
    m_sinceListen.start();
    if (!m_trouble.isEmpty())
        logLine(m_trouble);
    tellTrouble();
}

void PointOfSaleLink::tellBesides(const QString &trouble)
{
    m_besides = trouble;
    tellTrouble();
}

void PointOfSaleLink::tellTrouble() const
{
    delegate()->setConnectionTrouble(m_trouble.isEmpty() ? m_besides : m_trouble);
}

void PointOfSaleLink::forgetReadings()
{
    m_isSilent = false;
    m_newest.reset();
    m_held.reset();
    m_isDue = false;
    m_wasConfirmed = false;
    m_texts = {};
}

void PointOfSaleLink::retry()
{
    if (!m_scale || m_connection || m_devices.readingError(m_scale->device.node) != 0)
        return;
    if (m_sinceOpen.isValid() && milliseconds(m_sinceOpen.elapsed()) < retryInterval)
        return;
    use(openClassScale(m_devices, m_scale->device));
    if (!m_connection && m_failures > 0)
        ++m_failures;
}

// The node may be one of before, and what is opened anew works.
void PointOfSaleLink::giveConnectionUp()
{
    m_trouble = QStringLiteral("The scale at %1 could not be read.").arg(m_scale->device.node);
    logLine(m_trouble);
    m_connection.reset();
    ++m_failures;
}

void PointOfSaleLink::detach()
{
    if (!m_scale)
        return;
    m_scale.reset();
    m_connection.reset();
    m_trouble.clear();
    forgetReadings();
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
    use(openClassScale(m_devices, m_scale->device));
    return m_connection != nullptr;
}

QString PointOfSaleLink::silenceText() const
{
    if (m_failures > 0)
        return QStringLiteral("The scale could not be read. It is tried again every two seconds. "
                              "If nothing comes, put something on it, or unplug it and plug it in "
                              "again.");
    if (!m_rhythm.hasBegun())
        return QStringLiteral("The scale sends nothing yet. Some send only when the weight "
                              "changes: put something on it. If nothing comes, press its own key "
                              "or plug it in again.");
    return QStringLiteral("The scale sends nothing any more. If its display is dark, press its own "
                          "key. If it stays silent, unplug it and plug it in again.");
}

bool PointOfSaleLink::canTare() const
{
    return m_scale && m_scale->layout.zero && m_devices.accessError(m_scale->device.node) == 0;
}

ScaleAbilities PointOfSaleLink::abilities() const
{
    const bool isOunces = m_unit == WeightUnit::Ounce;
    return {.power = false,
            .tare = canTare(),
            .blinksAtTare = false,
            .units = isOunces ? QList<int>{unittag::ounces, unittag::poundsOuncesA} : QList<int>(),
            .unitShown = rowTag(m_unit, m_asPoundsAndOunces)};
}

void PointOfSaleLink::chooseUnit(int tag)
{
    m_asPoundsAndOunces = asksForPoundsAndOunces(tag);
    m_isDue = true;
}

void PointOfSaleLink::setHeld(bool held)
{
    m_held.reset();
    if (held && m_newest && m_rhythm.isConfirmed())
        m_held = m_newest;
    m_isDue = true;
}

void PointOfSaleLink::pressTare()
{
    if (!m_scale || !m_scale->layout.zero)
        return;
    const ZeroCommand &zero = *m_scale->layout.zero;
    std::vector<std::uint8_t> report(1 + zero.bytes);
    report[0] = zero.report;
    report.at(1 + zero.bit / 8) = static_cast<std::uint8_t>(1U << (zero.bit % 8));
    const bool fails = m_devices.sendOutputReport(m_scale->device.node, report) < 0;
    m_isDue = m_isDue || fails != m_hasTareFailed;
    m_hasTareFailed = fails;
    if (fails)
        logLine(QStringLiteral("The scale could not be told to take its load for zero"));
}

bool PointOfSaleLink::takeReport(std::span<const std::uint8_t> report)
{
    auto statement = readScaleReport(report, m_scale->layout);
    if (!statement)
        return false;
    m_rhythm.take(*statement);
    if (statement->unit != WeightUnit::Unknown)
        m_unit = statement->unit;
    else if (statement->number.isZero())
        statement->unit = m_unit; // nothing is nothing in any unit
    m_newest = statement;
    return true;
}

bool PointOfSaleLink::listen()
{
    bool isNew = false;
    int count = 0;
    std::array<std::uint8_t, 256> buffer{};
    while (m_connection && count < mostReports) {
        const auto received = m_connection->read(buffer, 0ms);
        if (!received)
            break;
        if (*received < 0) {
            giveConnectionUp();
            break;
        }
        ++count;
        m_failures = 0;
        if (takeReport(std::span(buffer).first(static_cast<std::size_t>(*received))))
            isNew = true;
    }
    if (count >= mostKept && milliseconds(m_sinceListen.elapsed()) >= presentTime)
        m_rhythm.doubt();
    m_sinceListen.start();
    return isNew;
}

bool PointOfSaleLink::takeReading()
{
    retry();
    const bool isNew = listen();
    m_isSilent = m_failures >= toldFailures || (m_connection && m_rhythm.isSilent());
    const bool isDue = m_isDue || m_wasConfirmed != m_rhythm.isConfirmed();
    if (!m_newest || (!isNew && !isDue))
        return false;
    return take(!isNew);
}

ScaleReading PointOfSaleLink::reading(bool isRepeated) const
{
    return {.statement = m_held ? *m_held : *m_newest,
            .isHeld = m_held.has_value(),
            .isConfirmed = m_held || m_wasConfirmed,
            .isRepeated = isRepeated,
            .asPoundsAndOunces = m_asPoundsAndOunces,
            .canTare = canTare(),
            .hasTareFailed = m_hasTareFailed};
}

bool PointOfSaleLink::take(bool isRepeated)
{
    m_isDue = false;
    m_wasConfirmed = m_rhythm.isConfirmed();
    m_hasTareFailed = m_hasTareFailed && m_newest->status != ScaleStatus::StableAtZero;
    logLine(QStringLiteral("Scale says: status %1, unit %2, %3%4e%5")
                .arg(static_cast<int>(m_newest->status))
                .arg(static_cast<int>(m_newest->unit))
                .arg(m_newest->number.isNegative ? QStringLiteral("-") : QString())
                .arg(m_newest->number.digits)
                .arg(m_newest->number.exponent));
    const ScaleReading taken = reading(isRepeated);
    delegate()->takeReading(taken);
    return makeTexts(taken);
}

bool PointOfSaleLink::makeTexts(const ScaleReading &reading)
{
    const ScaleStatement &shown = reading.statement;
    m_form.form = exportForm(shown.unit);
    const auto rounding = m_roundsUp() ? ExportRounding::UpToWhole : ExportRounding::AsRead;
    const bool leaves = reading.isConfirmed && shown.isSound();
    const auto text = leaves ? exportText(shown, m_form.form, rounding) : std::nullopt;
    m_texts = text ? webStrings(shown).value_or(WebStrings()) : WebStrings();
    delegate()->setExportLabelText(text.value_or(QString()));
    if (text && delegate()->SetClip())
        delegate()->copyToClipboard(delegate()->exportLabelText());
    return text.has_value();
}
