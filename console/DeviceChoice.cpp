// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/DeviceChoice.h"

#include "scale/SystemHidDevices.h"
#include "scale/traffic/RecordedHidDevices.h"
#include "scale/traffic/ReplayedHidDevices.h"

#include <QFile>

namespace {

DeviceChoice recording(const QString &name)
{
    auto devices = std::make_unique<RecordedHidDevices>(std::make_unique<SystemHidDevices>());
    if (!devices->startFile(name))
        return {.devices = {},
                .trouble = QStringLiteral("Cannot write %1: %2").arg(name, devices->errorText())};
    return {.devices = std::move(devices), .trouble = {}};
}

DeviceChoice replaying(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {.devices = {},
                .trouble = QStringLiteral("Cannot read %1: %2").arg(name, file.errorString())};
    QString trouble;
    std::optional<Traffic> traffic = Traffic::parse(file.readAll(), &trouble);
    if (!traffic)
        return {.devices = {},
                .trouble = QStringLiteral("Cannot play back %1: %2").arg(name, trouble)};
    return {.devices = std::make_unique<ReplayedHidDevices>(*std::move(traffic)), .trouble = {}};
}

} // namespace

DeviceChoice DeviceChoice::of(const CommandLine &line)
{
    if (!line.recordFile.isEmpty())
        return recording(line.recordFile);
    if (!line.replayFile.isEmpty())
        return replaying(line.replayFile);
    return {.devices = std::make_unique<SystemHidDevices>(), .trouble = {}};
}
