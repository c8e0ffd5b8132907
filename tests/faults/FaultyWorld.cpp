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
    getrlimit(RLIMIT_FSIZE, &fileSize);
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
    if (plugged)
        return;
    plugged = true;
    scale.name = scale.name == "hidraw0" ? "hidraw1" : "hidraw0";
    model.plugIn();
    if (notice == Notice::Sent)
        fakeudev::plug(scale);
    else
        fakeudev::place(scale);
    applyTransfers();
}

void FaultyWorld::unplug(Notice notice)
{
    if (!plugged)
        return;
    plugged = false;
    fakeudev::unplug(scale.name);
    if (notice == Notice::Dropped)
        fakeudev::overflow();
    applyTransfers();
}

void FaultyWorld::deliver(Reports kind)
{
    reports = kind;
    applyTransfers();
}

void FaultyWorld::failSending(bool fails)
{
    sendingFails = fails;
    applyTransfers();
}

void FaultyWorld::applyTransfers()
{
    app.hidapi.sendFails = sendingFails || !plugged;
    app.hidapi.readFails = reports == Reports::None || !plugged;
    if (!plugged)
        app.hidapi.reports.clear();
}

void FaultyWorld::fillDisk(bool full)
{
    rlimit limit = fileSize;
    if (full)
        limit.rlim_cur = 0;
    setrlimit(RLIMIT_FSIZE, &limit);
}

void FaultyWorld::loseSettingsFolder()
{
    if (!folderIsBlocked)
        storedsettings::forget();
}

void FaultyWorld::blockSettingsFolder(bool blocked)
{
    if (blocked == std::exchange(folderIsBlocked, blocked))
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
    happening = what;
}

void FaultyWorld::exchange()
{
    const auto sent = app.hidapi.sent.back();
    if (happening)
        std::exchange(happening, {})();
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
    switch (reports) {
    case Reports::Whole: break;
    case Reports::None:
    case Reports::Empty: bytes.clear(); break;
    case Reports::Short: bytes.resize(1); break;
    case Reports::Long: bytes.resize(longReport, 0xFF); break;
    case Reports::Nonsense:
        for (std::uint8_t &byte : bytes)
            byte = static_cast<std::uint8_t>(nonsense());
        break;
    }
    return bytes;
}
