// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ReadingReportDelegate.h"
#include "app/ReadingVoice.h"
#include "scale/ScaleDelegate.h"

#include <QApplication>
#include <memory>

class BrowserLink;
class DarkStyle;
struct BrowserSituation;
class Settings;

/// The application object: makes the delegate and its window, and ends with the window.
class Application : public QApplication, public ScaleApplication
{
    Q_OBJECT

public:
    Application(int &argc, char **argv);
    ~Application() override;

    /// Null before the launch.
    ReadingReportDelegate *delegate() const override;
    HidDevices &devices() override { return *m_devices; }

    /// To be called before the launch, or not at all: the machine's own are taken then.
    void useDevices(std::unique_ptr<HidDevices> devices);
    /// The same for what stands in for the user's browsers. It must outlive the application.
    void useBrowsers(BrowserBridge &browsers) { m_browsers = &browsers; }
    /// Creates the delegate and its window, and launches. @p infoFile may be empty.
    void launch(const QString &infoFile);
    /// The same, with the window not shown, for reading the scale alone: no setting is changed.
    void launchUnseen(const QString &infoFile);
    /// Lets the user's browsers attach.
    void linkBrowsers();
    const BrowserSituation &browserSituation() const;

private:
    void lastWindowWasClosed();
    void tellFollowingFields();
    void prepare(const QString &infoFile, std::unique_ptr<Settings> settings);

    std::unique_ptr<HidDevices> m_devices;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<DarkStyle> m_darkStyle; ///< null where the toolkit has one
    std::unique_ptr<BrowserLink> m_browserLink;
    BrowserBridge *m_browsers;
    std::unique_ptr<ReadingReportDelegate> m_delegate;
    std::unique_ptr<ReadingVoice> m_voice; ///< of a window that is shown
};
