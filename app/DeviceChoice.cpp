// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/DeviceChoice.h"

#include "scale/RecordedHidDevices.h"
#include "scale/ReplayedHidDevices.h"

#include <QFile>

namespace {

DeviceChoice recording(const QString &name, HidDevices &machine)
{
    auto devices = std::make_unique<RecordedHidDevices>(machine);
    if (!devices->startFile(name))
        return {.trouble = QStringLiteral("Cannot write %1: %2").arg(name, devices->errorText())};
    return {.devices = std::move(devices)};
}

DeviceChoice replaying(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {.trouble = QStringLiteral("Cannot read %1: %2").arg(name, file.errorString())};
    QString trouble;
    std::optional<Traffic> traffic = Traffic::parse(file.readAll(), &trouble);
    if (!traffic)
        return {.trouble = QStringLiteral("Cannot play back %1: %2").arg(name, trouble)};
    return {.devices = std::make_unique<ReplayedHidDevices>(*std::move(traffic))};
}

} // namespace

DeviceChoice DeviceChoice::of(const CommandLine &line, HidDevices &machine)
{
    if (!line.recordFile.isEmpty())
        return recording(line.recordFile, machine);
    if (!line.replayFile.isEmpty())
        return replaying(line.replayFile);
    return {};
}
