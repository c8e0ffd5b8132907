// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ReadingVoice.h"

#include "app/ReadingReportDelegate.h"
#include "app/StatusArea.h"
#include "widgets/Announcer.h"

#include <optional>

namespace {

/// What the window's edge says in that state, beside the reading.
std::optional<StatusArea::Notice> noticeOf(ReportState state)
{
    switch (state) {
    case ReportState::Off:
    case ReportState::NotReady: return StatusArea::Notice::Scale;
    case ReportState::NotOpened:
    case ReportState::NoPermission: return StatusArea::Notice::Connection;
    default: return {};
    }
}

} // namespace

ReadingVoice::ReadingVoice(ReadingReportDelegate &delegate)
    : m_delegate(delegate)
    , m_announcer(new Announcer(delegate.window.get()))
    , m_isHeard(QAccessible::isActive())
{
    QAccessible::installActivationObserver(this);
    m_clock.start();
    connect(&delegate, &ReadingReportDelegate::reportDue, this, &ReadingVoice::tellReading);
    connect(&delegate.statusArea(), &StatusArea::noticeAppeared, this, &ReadingVoice::tellNotice);
    const auto confirmBoth = [this](const QAbstractButton *button, const QAction *item,
                                    const QString &command) {
        connect(button, &QAbstractButton::clicked, this, [this, command] { confirm(command); });
        connect(item, &QAction::triggered, this, [this, command] { confirm(command); });
    };
    confirmBoth(delegate.tareButton, delegate.tareItem, QStringLiteral("Tare"));
    confirmBoth(delegate.powerButton, delegate.powerItem, QStringLiteral("Power"));
    connect(delegate.holdButton, &QAbstractButton::clicked, this, &ReadingVoice::confirmHold);
    connect(delegate.holdItem, &QAction::triggered, this, &ReadingVoice::confirmHold);
    if (m_isHeard)
        tellWhatStands();
}

ReadingVoice::~ReadingVoice()
{
    QAccessible::removeActivationObserver(this);
}

void ReadingVoice::accessibilityActiveChanged(bool active)
{
    // Some versions of the toolkit say it again when they have their end of the bus.
    if (active == m_isHeard)
        return;
    m_isHeard = active;
    m_readings = {};
    // Who comes later is told of no connection: it was made before.
    if (m_delegate.isDeviceConnected)
        m_readings.take(ReadingReport::of(ReportState::Waiting),
                        std::chrono::milliseconds(m_clock.elapsed()));
    if (active)
        tellWhatStands();
}

void ReadingVoice::tellWhatStands()
{
    // The toolkit says that it is heard before it has its end of the bus: what is told at once is
    // lost.
    QMetaObject::invokeMethod(
        this, [this] { tellNotice(m_delegate.statusArea().spokenNotices()); },
        Qt::QueuedConnection);
}

void ReadingVoice::tellNotice(const QString &words)
{
    if (m_isHeard && !words.isEmpty())
        m_announcer->say(words);
}

void ReadingVoice::tellReading()
{
    if (!m_isHeard)
        return;
    const ReadingReport report = m_delegate.followedReport();
    const auto notice = noticeOf(report.state);
    const bool isNoticed = notice && m_delegate.statusArea().hasNotice(*notice);
    const QString words =
        m_readings.take(report, std::chrono::milliseconds(m_clock.elapsed()),
                        isNoticed ? SpokenReadings::Notice::Said : SpokenReadings::Notice::None);
    // On the panel too: there are screen readers that drop the new name of a text.
    if (!words.isEmpty())
        m_announcer->say(words);
}

void ReadingVoice::confirm(const QString &command)
{
    m_announcer->say(m_delegate.isDeviceConnected ? command : QStringLiteral("No scale connected"));
}

void ReadingVoice::confirmHold()
{
    const ReportState state = m_delegate.followedReport().state;
    // There it is in the reading.
    if (state == ReportState::Weight || state == ReportState::Hold)
        return;
    confirm(m_delegate.onhold ? QStringLiteral("Hold is on") : QStringLiteral("Hold is off"));
}
