// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/WindowCommand.h"

#include "app/Application.h"
#include "app/SessionFollower.h"
#include "browser/link/BrowserSituation.h"
#include "console/DeviceChoice.h"
#include "console/LogOutput.h"
#include "console/ReadingFeed.h"
#include "console/RemoteControl.h"
#include "console/SingleInstance.h"
#include "console/SingleInstanceRequest.h"
#include "console/WindowSituation.h"
#include "desktop/ActivationToken.h"
#include "desktop/DesktopEnvironment.h"
#include "desktop/TaskBarRequest.h"

#include <QThread>
#include <cstdio>
#include <sysexits.h>

namespace {

/// A start that nobody has handed a token to, such as one from a terminal, may still want the
/// window to be looked at.
ActivationRight withToken(ActivationRight right, Desktop desktop)
{
    if (right.activationToken.isEmpty() && desktop == Desktop::Wayland)
        right.activationToken = requestActivationToken(Application::desktopFileName());
    return right;
}

/// Looks for about a second; where everything is slow, so are the answers.
bool comesToTheFront(const SingleInstance &instance)
{
    constexpr int looks = 20;
    constexpr unsigned long intervalMs = 50;
    for (int look = 0; look < looks; ++look) {
        const SingleInstance::Claim claim = instance.askFirst(situationRequest());
        if (claim.outcome == SingleInstance::Claim::Outcome::Unanswered)
            return false;
        // One that has been closed meanwhile is not behind the others either.
        if (WindowSituation::fromJson(claim.answer).isSeen)
            return true;
        QThread::msleep(intervalMs);
    }
    return false;
}

/// Whether each window that is not brought to the front is marked there. Of a mark on Wayland no
/// program is told; GNOME makes one only of a window that others cover.
bool marksWindows(Desktop desktop, Shell shell)
{
    return shell == Shell::Sway || (shell == Shell::Plasma && desktop == Desktop::Wayland);
}

/// Once the first window has done what it can.
void seeToTheWindow(const SingleInstance &instance, const DesktopEnvironment &environment)
{
    const Desktop desktop = expectedDesktop(environment);
    if (desktop == Desktop::None)
        return;
    // labwc hands no token to what its keys and menus start, and for a token that no key or click
    // made it does not even mark the window.
    if (desktop == Desktop::Wayland && environment.shell == Shell::Labwc)
        raiseAsTaskBar(Application::desktopFileName());
    if (!marksWindows(desktop, environment.shell) && !comesToTheFront(instance))
        std::fputs("Postal Scale is running already. The desktop has not brought its window to the "
                   "front; look for it among the others\n",
                   stderr);
}

} // namespace

WindowCommand::WindowCommand(Application &application, SingleInstance &instance,
                             EndSignals &endSignals, LogOutput &log)
    : m_application(application)
    , m_instance(instance)
    , m_endSignals(endSignals)
    , m_log(log)
{
}

int WindowCommand::run(const CommandLine &line, const ActivationRight &right)
{
    const DesktopEnvironment environment = DesktopEnvironment::ofSession();
    const ActivationRight token = withToken(right, expectedDesktop(environment));
    switch (m_instance.claim(raiseRequest(token)).outcome) {
    case SingleInstance::Claim::Outcome::Ours: break;
    case SingleInstance::Claim::Outcome::Answered:
        if (line.recordFile.isEmpty() && line.replayFile.isEmpty()) {
            seeToTheWindow(m_instance, environment);
            return 0;
        }
        std::fputs("Postal Scale is running already; close its window first\n", stderr);
        return 1;
    case SingleInstance::Claim::Outcome::Unanswered:
        std::fputs("Postal Scale is running already, but does not answer\n", stderr);
        return 1;
    }
    // Not before: the log of the one that runs may be the same file.
    return openLog(line) ? weigh(line) : EX_USAGE;
}

bool WindowCommand::openLog(const CommandLine &line)
{
    const QString file =
        line.logFile.isEmpty() ? qEnvironmentVariable("POSTAL_SCALE_LOG") : line.logFile;
    QString trouble;
    if (file.isEmpty() || m_log.writeTo(file, &trouble))
        return true;
    std::fprintf(stderr, "Cannot write %s: %s\n", qPrintable(file), qPrintable(trouble));
    return false;
}

int WindowCommand::weigh(const CommandLine &line)
{
    DeviceChoice choice = DeviceChoice::of(line);
    if (!choice.devices) {
        std::fprintf(stderr, "%s\n", qPrintable(choice.trouble));
        return EX_USAGE;
    }
    if (choice.record != nullptr)
        m_log.annotate(*choice.record);
    m_application.useDevices(std::move(choice.devices));
    m_application.launch(line.infoFile);
    m_application.linkBrowsers();
    ReadingFeed feed(*m_application.delegate());
    m_instance.serve([this](const QJsonObject &laterStart) { return answer(laterStart); },
                     [&feed](const QJsonObject &laterStart, LocalSocket &peer) {
                         return feed.adopt(laterStart, peer);
                     });
    if (!m_instance.trouble().isEmpty())
        m_application.delegate()->showSessionTrouble(
            QStringLiteral("Later starts do not find this window: %1. %2 Until then, do not start "
                           "a second one: two programs that read a scale take each other's "
                           "answers.")
                .arg(m_instance.trouble(), m_instance.cure()));
    const SessionFollower follower(*m_application.delegate(), m_endSignals);
    return Application::exec();
}

QJsonObject WindowCommand::answer(const QJsonObject &laterStart)
{
    switch (requestOf(laterStart)) {
    case InstanceRequest::Raise:
        bringToFront(m_application.delegate()->window.get(), ActivationRight::fromJson(laterStart));
        break;
    case InstanceRequest::Reading: return m_application.delegate()->readingReport().toJson();
    case InstanceRequest::Situation: return situation().toJson();
    case InstanceRequest::Operate:
        return RemoteControl(*m_application.delegate())
            .perform(verbOf(laterStart), valueOf(laterStart))
            .toJson();
    // Those that there is a place for are the feed's.
    case InstanceRequest::Follow: return tooManyAnswer();
    case InstanceRequest::Unknown: break;
    }
    return {};
}

WindowSituation WindowCommand::situation() const
{
    const BrowserSituation &browser = m_application.browserSituation();
    return {.platform = Application::platformName(),
            .browserLink = browser.text(),
            .hasBrowser = browser.kind != BrowserSituation::Kind::NoBrowser &&
                          browser.kind != BrowserSituation::Kind::Impossible,
            .browserCanLink = browser.kind != BrowserSituation::Kind::Impossible,
            .browserFits = browser.kind != BrowserSituation::Kind::WrongVersion,
            .isSeen = isBroughtToFront(*m_application.delegate()->window)};
}
