// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/BundleInformation.h"
#include "app/PostalScaleAppDelegate.h"
#include "export/Settings.h"

#include <QCommandLineParser>

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
{
    setApplicationName(QStringLiteral("postal-scale"));
    setApplicationVersion(QStringLiteral(POSTALSCALE_VERSION));
    setDesktopFileName(QStringLiteral("postal-scale"));
    // The delegate has a word to say before the program ends.
    setQuitOnLastWindowClosed(false);
    connect(this, &QGuiApplication::lastWindowClosed, this, &Application::lastWindowWasClosed);
}

Application::~Application() = default;

Application *Application::sharedApplication()
{
    return static_cast<Application *>(QCoreApplication::instance());
}

PostalScaleAppDelegate *Application::delegate() const
{
    return appDelegate.get();
}

void Application::launch(const QString &infoFile)
{
    settings = std::make_unique<Settings>();
    appDelegate =
        std::make_unique<PostalScaleAppDelegate>(BundleInformation::load(infoFile), *settings);
    appDelegate->awakeFromNib();
    appDelegate->applicationDidFinishLaunching();
    appDelegate->window->show();
}

int Application::run()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Shows, copies and fills in the weight of a USB postal scale."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption info(
        QStringLiteral("info"),
        QStringLiteral("Read branding and model lists from FILE instead of the built-in ones."),
        QStringLiteral("FILE"));
    parser.addOption(info);
    parser.process(*this);

    launch(parser.value(info));
    return exec();
}

void Application::lastWindowWasClosed()
{
    if (appDelegate && appDelegate->applicationShouldTerminateAfterLastWindowClosed())
        quit();
}
