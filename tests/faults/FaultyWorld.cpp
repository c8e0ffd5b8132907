// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/FaultyWorld.h"

#include <QDir>
#include <QFileInfo>
#include <csignal>
#include <utility>

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
    if (notice == Notice::Sent)
        fakeudev::plug(m_scale);
    else
        fakeudev::place(m_scale);
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
        app.hidapi.reports.clear();
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
    if (app.hidapi.sendFails)
        return;
    const auto answer = model.receive(std::span(sent).subspan(1));
    if (answer)
        app.hidapi.reports.push_back(distorted(*answer));
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
