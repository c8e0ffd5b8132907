// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HidDevices.h"

#include <functional>
#include <memory>
#include <vector>

/// One open device. Once it is gone every call answers -1.
class HidHandle
{
public:
    HidHandle(std::unique_ptr<HidConnection> connection, const QString &systemPath);

    /// First byte: report number, 0 for none. The length of @p report, or -1.
    int sendFeatureReport(std::span<const std::uint8_t> report);
    /// As HidConnection::read().
    std::optional<int> read(std::span<std::uint8_t> buffer, std::chrono::milliseconds patience);

    /// Releases the library's handle: one that stays open keeps its kernel minor, and there are
    /// only 64 of them for all programs.
    void close();
    const QString &systemPath() const { return m_path; }

private:
    std::unique_ptr<HidConnection> m_connection;
    QString m_path;
};

/// The HID access library, extended by the removal hook that it does not have itself.
class HidLibrary
{
public:
    using RemovalHook = std::function<void()>;

    HidLibrary(HidDevices &devices, RemovalHook hook);

    /// Null when the node cannot be opened. The first open that succeeds arms the removal hook.
    /// Takes 60 to 80 ms on a real USB device; reports that arrive meanwhile are lost.
    std::shared_ptr<HidHandle> open(const QString &node, const QString &systemPath);

    /// Closes @p handle, if it is open still, and forgets it.
    void release(const std::shared_ptr<HidHandle> &handle);

    /// Why the latest open failed, in the library's words.
    QString lastError() const;

    /// To be called for every HID device that is removed.
    void deviceRemoved(const QString &systemPath);

private:
    HidDevices &m_devices;
    RemovalHook m_removalHook;
    bool m_hookArmed = false;
    std::vector<std::shared_ptr<HidHandle>> m_openHandles;
};
