// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/FaultyWorld.h"

#include "tests/support/FakeClock.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <csignal>
#include <utility>

using namespace std::chrono_literals;

namespace {

QString settingsFolder()
{
    return QFileInfo(storedsettings::file()).path();
}

QString asideFolder()
{
    return settingsFolder() + QStringLiteral("-aside");
}

} // namespace

FaultyWorld::FaultyWorld()
    : app(LaunchedApplication::Scale::Absent)
{
    // A write beyond the limit is to fail, not to end the process.
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &m_fileSize);
    app.hidapi.duringSend = [this] { exchange(); };
    model.setLoad(1234);
}

FaultyWorld::~FaultyWorld()
{
    app.hidapi.duringSend = {};
    app.hidapi.duringWait = {};
    fillDisk(false);
    blockSettingsFolder(false);
}

// As long as the program holds the node of an earlier plug, the kernel gives out another number.
void FaultyWorld::plug(Notice notice)
{
    if (m_plugged)
        return;
    m_plugged = true;
    m_scale.name = m_scale.name == "hidraw0" ? "hidraw1" : "hidraw0";
    model.plugIn();
    m_scale.isInitialized = notice != Notice::Late;
    if (notice == Notice::Sent)
        fakeudev::plug(m_scale);
    else
        fakeudev::place(m_scale);
    // The program sees it all the same: it looks for itself.
    if (notice == Notice::Late)
        fakeudev::overflow();
    applyTransfers();
}

void FaultyWorld::unplug(Notice notice)
{
    if (!m_plugged)
        return;
    m_plugged = false;
    fakeudev::unplug(m_scale.name);
    if (notice == Notice::Dropped)
        fakeudev::overflow();
    applyTransfers();
}

void FaultyWorld::deliver(Reports kind)
{
    m_reports = kind;
    applyTransfers();
}

void FaultyWorld::failSending(bool fails)
{
    m_sendingFails = fails;
    applyTransfers();
}

void FaultyWorld::applyTransfers()
{
    app.hidapi.sendFails = m_sendingFails || !m_plugged;
    app.hidapi.readFails = m_reports == Reports::None || !m_plugged;
    if (!m_plugged)
        loseReports();
}

void FaultyWorld::loseReports()
{
    app.hidapi.reports.clear();
    app.hidapi.duringWait = {};
    m_heldBack.clear();
}

void FaultyWorld::fallSilent(std::chrono::milliseconds time)
{
    m_silence.setRemainingTime(time);
}

void FaultyWorld::waitForTheEndOfSilence() const
{
    while (!m_silence.hasExpired())
        LaunchedApplication::pass(100ms, 100ms);
}

void FaultyWorld::loseAnswer()
{
    m_losesAnswer = true;
}

void FaultyWorld::resetBus()
{
    loseReports();
    model.plugIn();
    loseAnswer();
}

void FaultyWorld::announce()
{
    fakeudev::announceLate(m_scale.name);
}

void FaultyWorld::fillDisk(bool full)
{
    rlimit limit = m_fileSize;
    if (full)
        limit.rlim_cur = 0;
    setrlimit(RLIMIT_FSIZE, &limit);
}

void FaultyWorld::loseSettingsFolder()
{
    if (!m_folderIsBlocked)
        storedsettings::forget();
}

void FaultyWorld::blockSettingsFolder(bool blocked)
{
    if (blocked == std::exchange(m_folderIsBlocked, blocked))
        return;
    if (blocked) {
        QDir().mkpath(settingsFolder());
        QDir().rename(settingsFolder(), asideFolder());
        QFile::link(QStringLiteral("/proc/nowhere"), settingsFolder());
    } else {
        QFile::remove(settingsFolder());
        QDir().rename(asideFolder(), settingsFolder());
    }
}

void FaultyWorld::duringNextExchange(const std::function<void()> &what)
{
    m_happening = what;
}

void FaultyWorld::exchange()
{
    const auto sent = app.hidapi.sent.back();
    if (m_happening)
        std::exchange(m_happening, {})();
    if (app.hidapi.sendFails) {
        if (m_heldBack.empty())
            app.hidapi.duringWait = {};
        return;
    }
    if (const auto report = model.receive(std::span(sent).subspan(1)))
        answer(distorted(*report));
}

// A read that finds nothing waits only where an answer is missing: it fails where there is no
// scale to wait for.
void FaultyWorld::answer(const std::vector<std::uint8_t> &report)
{
    const bool isLost = std::exchange(m_losesAnswer, false);
    if (!isLost && m_silence.hasExpired()) {
        app.hidapi.duringWait = {};
        app.hidapi.reports.push_back(report);
        return;
    }
    if (!isLost)
        m_heldBack.push_back(report);
    app.hidapi.duringWait = [this](int patience) { wait(std::chrono::milliseconds(patience)); };
}

void FaultyWorld::wait(std::chrono::milliseconds patience)
{
    const bool comes = !m_heldBack.empty() && m_silence.remainingTimeAsDuration() <= patience;
    fakeclock::advance(
        comes ? std::chrono::ceil<std::chrono::milliseconds>(m_silence.remainingTimeAsDuration())
              : patience);
    if (comes)
        deliverHeldBack();
}

void FaultyWorld::deliverHeldBack()
{
    std::copy(m_heldBack.begin(), m_heldBack.end(), std::back_inserter(app.hidapi.reports));
    m_heldBack.clear();
}

std::vector<std::uint8_t> FaultyWorld::distorted(const ScaleModel::InputReport &report)
{
    constexpr std::size_t longReport = 64;
    std::vector<std::uint8_t> bytes(report.begin(), report.end());
    switch (m_reports) {
    case Reports::Whole: break;
    case Reports::None:
    case Reports::Empty: bytes.clear(); break;
    case Reports::Short: bytes.resize(1); break;
    case Reports::Long: bytes.resize(longReport, 0xFF); break;
    case Reports::Nonsense:
        for (std::uint8_t &byte : bytes)
            byte = static_cast<std::uint8_t>(m_nonsense());
        break;
    }
    return bytes;
}
