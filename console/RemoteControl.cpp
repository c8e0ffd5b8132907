// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/RemoteControl.h"

#include "app/ReadingReportDelegate.h"

#include <QAbstractButton>
#include <algorithm>
#include <array>

namespace {

const QString statusKey = QStringLiteral("status");
const QString wordsKey = QStringLiteral("words");

constexpr int noScale = 1;
constexpr int notPossible = 2;

const QString on = QStringLiteral("on");
const QString off = QStringLiteral("off");
const QString toggle = QStringLiteral("toggle");

struct UnitName
{
    QLatin1String name;
    QRadioButton *Ui::MainWindow::*row = nullptr;
};

const std::array<UnitName, 7> unitNames{{
    {QLatin1String("oz"), &Ui::MainWindow::rg1},
    {QLatin1String("lboz"), &Ui::MainWindow::rg2},
    {QLatin1String("lboz-fraction"), &Ui::MainWindow::rg3},
    {QLatin1String("lb"), &Ui::MainWindow::rg4},
    {QLatin1String("g"), &Ui::MainWindow::rg5},
    {QLatin1String("kg"), &Ui::MainWindow::rg6},
    {QLatin1String("lboz-whole"), &Ui::MainWindow::rg7},
}};

/// A scale in this state would not do what is asked of it.
bool isInVain(const QString &verb, ReportState state)
{
    const bool isTare = verb == QLatin1String("tare");
    const bool isUnit = verb == QLatin1String("unit");
    switch (state) {
    case ReportState::NoScale:
    case ReportState::NoPermission:
    case ReportState::NotOpened: return true;
    case ReportState::NoAnswer: return isTare || isUnit || verb == QLatin1String("power");
    case ReportState::Off: return isTare || isUnit;
    case ReportState::Overload:
    case ReportState::UnderLoad:
    case ReportState::NotReady: return isTare;
    case ReportState::Weight:
    case ReportState::Hold:
    case ReportState::Waiting: break;
    }
    return false;
}

RemoteAnswer done(const QString &words)
{
    return {.exitStatus = 0, .words = words};
}

RemoteAnswer refused(const QString &words)
{
    return {.exitStatus = notPossible, .words = words};
}

} // namespace

QJsonObject RemoteAnswer::toJson() const
{
    return {{statusKey, exitStatus}, {wordsKey, words}};
}

RemoteAnswer RemoteAnswer::fromJson(const QJsonObject &object)
{
    if (!object.contains(statusKey))
        return nobody();
    return {.exitStatus = object.value(statusKey).toInt(notPossible),
            .words = object.value(wordsKey).toString()};
}

RemoteAnswer RemoteAnswer::nobody()
{
    return {.exitStatus = noScale,
            .words = QStringLiteral("Postal Scale is not running; start it first")};
}

RemoteAnswer RemoteAnswer::hanging()
{
    const ReadingReport report = ReadingReport::ofHangingWindow();
    return {.exitStatus = report.exitStatus(), .words = report.words};
}

RemoteControl::RemoteControl(ReadingReportDelegate &window)
    : m_window(window)
{
}

RemoteAnswer RemoteControl::perform(const QString &verb, const QString &value)
{
    // A window is there without a scale too.
    if (verb == QLatin1String("compact"))
        return compact(value);
    const ReadingReport report = m_window.readingReport();
    if (isInVain(verb, report.state))
        return {.exitStatus = report.exitStatus(), .words = report.words};
    if (verb == QLatin1String("tare"))
        return tare();
    if (verb == QLatin1String("hold"))
        return hold(value);
    if (verb == QLatin1String("power"))
        return power();
    if (verb == QLatin1String("unit"))
        return chooseUnit(value);
    if (verb == QLatin1String("capture"))
        return capture();
    return refused(QStringLiteral("The window that is running does not know --%1; close it and "
                                  "start it again")
                       .arg(verb));
}

bool RemoteControl::isKnown(const QString &verb, const QString &value)
{
    if (verb == QLatin1String("hold") || verb == QLatin1String("compact"))
        return value == on || value == off || value == toggle;
    return verb != QLatin1String("unit") || units().contains(value);
}

QStringList RemoteControl::units()
{
    QStringList names;
    for (const UnitName &unit : unitNames)
        names.append(unit.name);
    return names;
}

RemoteAnswer RemoteControl::tare()
{
    if (!m_window.tareButton->isEnabled())
        return refused(QStringLiteral("This scale is tared with its own key only"));
    m_window.tareButton->click();
    return done(QStringLiteral("Tare"));
}

RemoteAnswer RemoteControl::hold(const QString &value)
{
    const bool isWanted = value == toggle ? !m_window.onhold : value == on;
    if (isWanted != m_window.onhold)
        m_window.holdButton->click();
    return done(m_window.onhold ? QStringLiteral("Hold is on") : QStringLiteral("Hold is off"));
}

RemoteAnswer RemoteControl::compact(const QString &value)
{
    m_window.setCompact(value == toggle ? !m_window.isCompact() : value == on);
    return done(m_window.isCompact() ? QStringLiteral("The window is compact")
                                     : QStringLiteral("The window is whole"));
}

RemoteAnswer RemoteControl::power()
{
    if (!m_window.powerButton->isEnabled())
        return refused(QStringLiteral("This scale is switched with its own key only"));
    const bool wasOn = m_window.hid_obj->currentStatue();
    m_window.powerButton->click();
    return done(wasOn ? QStringLiteral("Switching the scale off")
                      : QStringLiteral("Switching the scale on"));
}

RemoteAnswer RemoteControl::chooseUnit(const QString &unit)
{
    const auto *const found = std::find_if(unitNames.begin(), unitNames.end(),
                                           [&](const UnitName &each) { return each.name == unit; });
    if (found == unitNames.end())
        return refused(QStringLiteral("There is no unit %1").arg(unit));
    QRadioButton *row = m_window.*(found->row);
    if (!row->isEnabled())
        return refused(QStringLiteral("%1: this scale does not have it here").arg(row->text()));
    row->click();
    return done(row->text());
}

RemoteAnswer RemoteControl::capture()
{
    const CaptureOutcome outcome = m_window.captureReading();
    if (outcome == CaptureOutcome::Left)
        return done(QStringLiteral("%1 has left").arg(m_window.exportLabelText()));
    if (outcome == CaptureOutcome::ClipboardRefused)
        return refused(QStringLiteral("The desktop does not let the window write the clipboard; "
                                      "fields that are switched on get %1 all the same")
                           .arg(m_window.exportLabelText()));
    const ReadingReport report = m_window.readingReport();
    if (!report.hasReading())
        return refused(report.words);
    if (report.state == ReportState::Hold)
        return refused(QStringLiteral("The reading is held; only what lies on the pan leaves"));
    if (!report.parcel || report.age)
        return refused(QStringLiteral("The weight has not settled"));
    return refused(QStringLiteral("Nothing leaves: %1")
                       .arg(report.leaves.isEmpty() ? report.words : report.leaves));
}
