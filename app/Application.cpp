// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/Application.h"

#include "app/BuiltInIcon.h"
#include "app/BundleInformation.h"
#include "browser/link/BrowserLink.h"
#include "desktop/DarkStyle.h"
#include "scale/SystemHidDevices.h"
#include "settings/Settings.h"
#include "widgets/FirstFrame.h"
#include "widgets/WindowStyle.h"

#include <malloc.h>
#include <utility>

Application::Application(int &argc, char **argv)
    : QApplication(argc, argv)
    , m_devices(std::make_unique<SystemHidDevices>())
    , m_browserLink(std::make_unique<BrowserLink>())
    , m_browsers(m_browserLink.get())
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

ReadingReportDelegate *Application::delegate() const
{
    return m_delegate.get();
}

void Application::useDevices(std::unique_ptr<HidDevices> devices)
{
    m_devices = std::move(devices);
}

void Application::launch(const QString &infoFile)
{
    auto settings = std::make_unique<Settings>();
    settings->holdBack();
    prepare(infoFile, std::move(settings));
    m_voice = std::make_unique<ReadingVoice>(*m_delegate);
    if (DarkStyle::isNeeded())
        m_darkStyle = std::make_unique<DarkStyle>();
    m_delegate->window->show();
    new FirstFrame(*m_delegate->window, [this] {
        m_settings->writeHeldBack();
        // Unpacking its six pictures would take a twentieth of the start.
        setWindowIcon(builtInIcon());
        // What only the start needed goes back to the system.
        malloc_trim(0);
    });
}

void Application::launchUnseen(const QString &infoFile)
{
    prepare(infoFile, std::make_unique<Settings>(Settings::Access::ReadOnly));
}

void Application::prepare(const QString &infoFile, std::unique_ptr<Settings> settings)
{
    m_settings = std::move(settings);
    m_delegate = std::make_unique<ReadingReportDelegate>(BundleInformation::load(infoFile),
                                                         *m_settings, *m_browsers);
    m_delegate->awakeFromNib();
    m_delegate->applicationDidFinishLaunching();
}

void Application::linkBrowsers()
{
    connect(m_browserLink.get(), &BrowserLink::statusTextChanged, m_delegate.get(),
            &PostalScaleAppDelegate::showBrowserStatus);
    connect(m_browserLink.get(), &BrowserLink::pageWritten, m_delegate.get(),
            &PostalScaleAppDelegate::notePageFilled);
    m_browserLink->setWeightSource([this] { return m_delegate->fieldWeight(); });
    connect(m_delegate.get(), &PostalScaleAppDelegate::readingLeaves, this,
            &Application::tellFollowingFields);
    m_browserLink->listenAt(BrowserServer::defaultPath());
    m_delegate->showBrowserStatus(m_browserLink->statusText());
}

void Application::tellFollowingFields()
{
    if (!m_browserLink->isWeightFollowed())
        return;
    BrowserWeight weight = m_delegate->fieldWeight();
    weight.isNews = true;
    m_browserLink->tellWeight(weight);
}

const BrowserSituation &Application::browserSituation() const
{
    return m_browserLink->situation();
}

void Application::lastWindowWasClosed()
{
    if (m_delegate && m_delegate->applicationShouldTerminateAfterLastWindowClosed())
        quit();
}
