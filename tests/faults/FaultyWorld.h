// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/ScaleModel.h"
#include "tests/support/LaunchedApplication.h"

#include <QDeadlineTimer>
#include <chrono>
#include <functional>
#include <random>
#include <sys/resource.h>

/// Between two polls.
constexpr std::chrono::milliseconds interval{400};
/// In which a world's time goes on.
constexpr std::chrono::milliseconds step{100};

inline void pass(std::chrono::milliseconds time)
{
    LaunchedApplication::pass(time, step);
}

/// The running program with a scale that answers its polls, and all that can go wrong around it.
/// Nothing here lets the event loop run: a fault can also come in the middle of an exchange.
class FaultyWorld
{
public:
    /// What reaches the program in place of a report.
    enum class Reports { Whole, None, Empty, Short, Long, Nonsense };
    enum class Notice { Sent, Dropped, Late };

    FaultyWorld();
    ~FaultyWorld();

    void plug(Notice notice = Notice::Sent);
    void unplug(Notice notice = Notice::Sent);
    bool isPlugged() const { return m_plugged; }
    /// Of the scale as it is plugged in now.
    const fakeudev::Device &device() const { return m_scale; }

    void deliver(Reports reports);
    void failSending(bool fails);
    /// Answers to polls are held back from now on, and all come when that time is over.
    void fallSilent(std::chrono::milliseconds time);
    void waitForTheEndOfSilence() const;
    /// The answer to the next poll, or to the one under way, never comes.
    void loseAnswer();
    /// What was on its way is lost; the scale is well and announces its type anew.
    void resetBus();
    /// udev is through with a scale whose announcement was late.
    void announce();
    /// Every write to a file fails as it does on a full disk.
    void fillDisk(bool full);
    void loseSettingsFolder();
    /// In its place stands what no folder can be made of; back again with all that was in it.
    void blockSettingsFolder(bool blocked);

    /// Once, while the next report to the scale is on its way.
    void duringNextExchange(const std::function<void()> &happening);
    /// Whether such a happening is still to come.
    bool awaitsExchange() const { return static_cast<bool>(m_happening); }

    LaunchedApplication app;
    ScaleModel model;

private:
    void exchange();
    void answer(const std::vector<std::uint8_t> &report);
    /// The program waits for a report, or looks for one.
    void wait(std::chrono::milliseconds patience);
    void deliverHeldBack();
    void loseReports();
    std::vector<std::uint8_t> distorted(const ScaleModel::InputReport &report);
    void applyTransfers();

    fakeudev::Device m_scale = scaleDevice;
    bool m_plugged = false;
    bool m_sendingFails = false;
    bool m_folderIsBlocked = false;
    Reports m_reports = Reports::Whole;
    QDeadlineTimer m_silence;
    std::vector<std::vector<std::uint8_t>> m_heldBack;
    bool m_losesAnswer = false;
    std::function<void()> m_happening;
    std::mt19937 m_nonsense;
    rlimit m_fileSize{};
};
