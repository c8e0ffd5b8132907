// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/PostalScaleAppDelegate.h"
#include "scale/ScaleDelegate.h"

#include <QApplication>
#include <memory>

class Settings;

/// The application object: reads the command line, wires the delegate and runs the event loop.
class Application : public QApplication, public ScaleApplication
{
    Q_OBJECT

public:
    Application(int &argc, char **argv);
    ~Application() override;

    static Application *sharedApplication();
    /// Null before the launch.
    PostalScaleAppDelegate *delegate() const override;

    /// Creates the delegate and its window, and launches. @p infoFile may be empty.
    void launch(const QString &infoFile);
    /// The whole life of the program; its exit status.
    int run();

private:
    void lastWindowWasClosed();

    std::unique_ptr<Settings> settings;
    std::unique_ptr<PostalScaleAppDelegate> appDelegate;
};
