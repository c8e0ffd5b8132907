// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/HidLibrary.h"

#include <utility>

HidHandle::HidHandle(std::unique_ptr<HidConnection> connection, const QString &systemPath)
    : m_connection(std::move(connection))
    , m_path(systemPath)
{
}

int HidHandle::sendFeatureReport(std::span<const std::uint8_t> report)
{
    return m_connection ? m_connection->sendFeatureReport(report) : -1;
}

std::optional<int> HidHandle::read(std::span<std::uint8_t> buffer,
                                   std::chrono::milliseconds patience)
{
    return m_connection ? m_connection->read(buffer, patience) : -1;
}

void HidHandle::close()
{
    m_connection.reset();
}

HidLibrary::HidLibrary(HidDevices &devices, RemovalHook hook)
    : m_devices(devices)
    , m_removalHook(std::move(hook))
{
}

std::shared_ptr<HidHandle> HidLibrary::open(const QString &node, const QString &systemPath)
{
    std::unique_ptr<HidConnection> connection = m_devices.open(node);
    if (!connection)
        return nullptr;
    m_hookArmed = true;
    m_openHandles.push_back(std::make_shared<HidHandle>(std::move(connection), systemPath));
    return m_openHandles.back();
}

void HidLibrary::release(const std::shared_ptr<HidHandle> &handle)
{
    std::erase(m_openHandles, handle);
    if (handle)
        handle->close();
}

QString HidLibrary::lastError() const
{
    return m_devices.lastError();
}

void HidLibrary::deviceRemoved(const QString &systemPath)
{
    if (!m_hookArmed)
        return;
    m_removalHook();
    std::erase_if(m_openHandles, [&](const std::shared_ptr<HidHandle> &handle) {
        if (handle->systemPath() != systemPath)
            return false;
        handle->close();
        return true;
    });
}
