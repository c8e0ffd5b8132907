// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/HidLibrary.h"

#include <utility>

HidHandle::HidHandle(std::unique_ptr<HidConnection> openConnection, const QString &systemPath)
    : connection(std::move(openConnection))
    , path(systemPath)
{
}

int HidHandle::sendFeatureReport(std::span<const std::uint8_t> report)
{
    return connection ? connection->sendFeatureReport(report) : -1;
}

int HidHandle::read(std::span<std::uint8_t> buffer)
{
    return connection ? connection->read(buffer) : -1;
}

void HidHandle::close()
{
    connection.reset();
}

HidLibrary::HidLibrary(HidDevices &hidDevices, RemovalHook hook)
    : devices(hidDevices)
    , removalHook(std::move(hook))
{
}

std::shared_ptr<HidHandle> HidLibrary::open(const QString &node, const QString &systemPath)
{
    std::unique_ptr<HidConnection> connection = devices.open(node);
    if (!connection)
        return nullptr;
    hookArmed = true;
    openHandles.push_back(std::make_shared<HidHandle>(std::move(connection), systemPath));
    return openHandles.back();
}

QString HidLibrary::lastError() const
{
    return devices.lastError();
}

void HidLibrary::deviceRemoved(const QString &systemPath)
{
    if (!hookArmed)
        return;
    removalHook();
    std::erase_if(openHandles, [&](const std::shared_ptr<HidHandle> &handle) {
        if (handle->systemPath() != systemPath)
            return false;
        handle->close();
        return true;
    });
}
