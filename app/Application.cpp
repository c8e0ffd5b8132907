// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/BundleInformation.h"
#include "app/CommandLine.h"
#include "app/DeviceChoice.h"
#include "app/Doctor.h"
#include "app/DoctorFacts.h"
#include "app/ReadingReportCommand.h"
#include "app/SingleInstance.h"
#include "app/SingleInstanceRequest.h"
#include "app/WindowStyle.h"
#include "export/BrowserLink.h"
#include "export/Settings.h"

#include <cstdio>
#include <sysexits.h>

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("postal-scale"));
    setApplicationVersion(QStringLiteral(POSTALSCALE_VERSION));
    setDesktopFileName(QStringLiteral(POSTALSCALE_APPLICATION_ID));
    setStyle(new WindowStyle);
    // The delegate has a word to say before the program ends.
    setQuitOnLastWindowClosed(false);
    connect(this, &QGuiApplication::lastWindowClosed, this, &Application::lastWindowWasClosed);
}

Application::~Application() = default;

Application *Application::sharedApplication()
{
    return static_cast<Application *>(QCoreApplication::instance());
}

ReadingReportDelegate *Application::delegate() const
{
    return appDelegate.get();
}

HidDevices &Application::devices()
{
    return chosenDevices ? *chosenDevices : ScaleApplication::devices();
}

QString Application::useDevicesOf(const CommandLine &line)
{
    DeviceChoice choice = DeviceChoice::of(line, ScaleApplication::devices());
    chosenDevices = std::move(choice.devices);
    return choice.trouble;
}

void Application::launch(const QString &infoFile)
{
    launchUnseen(infoFile);
    appDelegate->window->show();
}

void Application::launchUnseen(const QString &infoFile)
{
    settings = std::make_unique<Settings>();
    appDelegate =
        std::make_unique<ReadingReportDelegate>(BundleInformation::load(infoFile), *settings);
    appDelegate->awakeFromNib();
    appDelegate->applicationDidFinishLaunching();
}

int Application::run(const ActivationRight &right)
{
    const CommandLine line = CommandLine::parse(arguments());
    switch (line.action) {
    case CommandLine::Action::ShowWindow: return showWindow(line, right);
    case CommandLine::Action::PrintReading: return printReading(line);
    case CommandLine::Action::Diagnose: return diagnose();
    case CommandLine::Action::ShowVersion:
        std::printf("%s %s\n", qPrintable(applicationName()), qPrintable(applicationVersion()));
        return 0;
    case CommandLine::Action::ShowHelp: std::fputs(qPrintable(line.text), stdout); return 0;
    case CommandLine::Action::Refuse: break;
    }
    std::fprintf(stderr, "%s\n", qPrintable(line.text));
    return EX_USAGE;
}

int Application::showWindow(const CommandLine &line, const ActivationRight &right)
{
    SingleInstance instance(SingleInstance::defaultFolder());
    switch (instance.claim(raiseRequest(right)).outcome) {
    case SingleInstance::Claim::Outcome::Ours: break;
    case SingleInstance::Claim::Outcome::Answered:
        if (line.recordFile.isEmpty() && line.replayFile.isEmpty())
            return 0;
        std::fputs("Postal Scale is running already; close its window first\n", stderr);
        return 1;
    case SingleInstance::Claim::Outcome::Unanswered:
        std::fputs("Postal Scale is running already, but does not answer\n", stderr);
        return 1;
    }
    if (const QString trouble = useDevicesOf(line); !trouble.isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(trouble));
        return EX_USAGE;
    }
    launch(line.infoFile);
    linkBrowsers();
    instance.serve([this](const QJsonObject &laterStart) { return answer(laterStart); });
    return exec();
}

void Application::linkBrowsers()
{
    browserLink = std::make_unique<BrowserLink>();
    connect(browserLink.get(), &BrowserLink::statusTextChanged, appDelegate.get(),
            &PostalScaleAppDelegate::showBrowserStatus);
    browserLink->listenAt(BrowserServer::defaultPath());
    appDelegate->showBrowserStatus(browserLink->statusText());
}

int Application::printReading(const CommandLine &line)
{
    SingleInstance instance(SingleInstance::defaultFolder());
    return ReadingReportCommand(*this, instance).run(line);
}

int Application::diagnose()
{
    SingleInstance instance(SingleInstance::defaultFolder());
    const QList<Finding> findings = ::diagnose(DoctorFacts::gather(instance));
    std::fputs(qPrintable(reportText(findings)), stdout);
    return exitStatus(findings);
}

QJsonObject Application::answer(const QJsonObject &laterStart)
{
    switch (requestOf(laterStart)) {
    case InstanceRequest::Raise:
        bringToFront(appDelegate->window.get(), ActivationRight::fromJson(laterStart));
        break;
    case InstanceRequest::Reading: return appDelegate->readingReport().toJson();
    case InstanceRequest::Situation: return {{QStringLiteral("platform"), platformName()}};
    case InstanceRequest::Unknown: break;
    }
    return {};
}

void Application::lastWindowWasClosed()
{
    if (appDelegate && appDelegate->applicationShouldTerminateAfterLastWindowClosed())
        quit();
}
