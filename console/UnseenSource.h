// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTimer>
#include <memory>

class Application;
class EndSignals;
class ReadingFeed;
class SingleInstance;
struct CommandLine;

/// Reads the scale for those that follow it while no window does: a process of its own, which the
/// first follower starts and which ends with the last. A window that is started takes its place.
class UnseenSource
{
public:
    /// All must outlive the object.
    UnseenSource(Application &application, SingleInstance &instance);
    ~UnseenSource();

    /// Has a process of its own do so, unless there is one already, or a window.
    /// @param infoFile may be empty
    static void start(const QString &infoFile);

    /// Until nobody needs it. The exit status.
    int run(const CommandLine &line);

private:
    void serve();

    Application &m_application;
    SingleInstance &m_instance;
    std::unique_ptr<ReadingFeed> m_feed;
    QTimer m_end;
};
