// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ReadingReportDelegate.h"
#include "app/SingleInstanceActivation.h"
#include "scale/ScaleDelegate.h"

#include <QApplication>
#include <memory>

class BrowserLink;
class Settings;
struct CommandLine;

/// The application object: reads the command line, wires the delegate and runs the event loop.
class Application : public QApplication, public ScaleApplication
{
    Q_OBJECT

public:
    Application(int &argc, char **argv);
    ~Application() override;

    static Application *sharedApplication();
    /// Null before the launch.
    ReadingReportDelegate *delegate() const override;
    HidDevices &devices() override;

    /// Creates the delegate and its window, and launches. @p infoFile may be empty.
    void launch(const QString &infoFile);
    /// The same, with the window not shown yet.
    void launchUnseen(const QString &infoFile);
    /// Before the launch. Empty, or why it cannot be done.
    QString useDevicesOf(const CommandLine &line);
    /// The whole life of the program; its exit status.
    int run(const ActivationRight &right);

private:
    int showWindow(const CommandLine &line, const ActivationRight &right);
    int printReading(const CommandLine &line);
    int diagnose();
    /// Lets the user's browsers attach.
    void linkBrowsers();
    QJsonObject answer(const QJsonObject &laterStart);
    void lastWindowWasClosed();

    std::unique_ptr<HidDevices> chosenDevices; ///< null: the machine's own
    std::unique_ptr<Settings> settings;
    std::unique_ptr<BrowserLink> browserLink; ///< null until the window is shown
    std::unique_ptr<ReadingReportDelegate> appDelegate;
};
