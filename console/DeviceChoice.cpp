// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/DeviceChoice.h"

#include "base/RegularFile.h"
#include "scale/SystemHidDevices.h"
#include "scale/traffic/RecordedHidDevices.h"
#include "scale/traffic/ReplayedHidDevices.h"

namespace {

/// In KiB; some hours of weighing.
constexpr qint64 largestRecord = 64 * 1024;

DeviceChoice recording(const QString &name)
{
    if (const QString refusal = refusalOf(name, anySize); !refusal.isEmpty())
        return {.devices = {}, .trouble = QStringLiteral("Cannot write %1: %2").arg(name, refusal)};
    auto devices = std::make_unique<RecordedHidDevices>(std::make_unique<SystemHidDevices>());
    if (!devices->startFile(name))
        return {.devices = {},
                .trouble = QStringLiteral("Cannot write %1: %2").arg(name, devices->errorText())};
    RecordedHidDevices *record = devices.get();
    return {.devices = std::move(devices), .record = record, .trouble = {}};
}

DeviceChoice replaying(const QString &name)
{
    QString trouble;
    const std::optional<QByteArray> text = readRegularFile(name, largestRecord, &trouble);
    if (!text)
        return {.devices = {}, .trouble = QStringLiteral("Cannot read %1: %2").arg(name, trouble)};
    std::optional<Traffic> traffic = Traffic::parse(*text, &trouble);
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
