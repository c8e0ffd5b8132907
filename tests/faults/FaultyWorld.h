// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/ScaleModel.h"
#include "tests/support/LaunchedApplication.h"

#include <functional>
#include <random>
#include <sys/resource.h>

/// The running program with a scale that answers its polls, and all that can go wrong around it.
/// Nothing here lets the event loop run: a fault can also come in the middle of an exchange.
class FaultyWorld
{
public:
    /// What reaches the program in place of a report.
    enum class Reports { Whole, None, Empty, Short, Long, Nonsense };
    enum class Notice { Sent, Dropped };

    FaultyWorld();
    ~FaultyWorld();

    void plug(Notice notice = Notice::Sent);
    void unplug(Notice notice = Notice::Sent);
    bool isPlugged() const { return m_plugged; }
    /// Of the scale as it is plugged in now.
    const fakeudev::Device &device() const { return m_scale; }

    void deliver(Reports reports);
    void failSending(bool fails);
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
    std::vector<std::uint8_t> distorted(const ScaleModel::InputReport &report);
    void applyTransfers();

    fakeudev::Device m_scale = scaleDevice;
    bool m_plugged = false;
    bool m_sendingFails = false;
    bool m_folderIsBlocked = false;
    Reports m_reports = Reports::Whole;
    std::function<void()> m_happening;
    std::mt19937 m_nonsense;
    rlimit m_fileSize{};
};
