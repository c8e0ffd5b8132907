// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/GObjectPointer.h"

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <sys/types.h>

struct Uevent
{
    std::string action;     ///< "add", "change" or "remove"
    std::string devicePath; ///< below /sys, beginning with /devices
    std::string subsystem;
    std::string deviceType; ///< empty: none
    std::string node;       ///< for example /dev/hidraw0; empty: none
    int major = 0;          ///< with a node only
    int minor = 0;
};

/// Sends what the udev daemon sends to the libudev monitors of the testbed's processes.
///
/// The testbed has a sender of its own, but that one aborts this process once a program has left
/// ten events unread, which an application blocked in a read does. Here they wait.
class UeventSender
{
public:
    explicit UeventSender(std::string directory);
    ~UeventSender();
    UeventSender(const UeventSender &) = delete;
    UeventSender &operator=(const UeventSender &) = delete;

    /// Every monitor gets its events in the order of these calls.
    void send(const Uevent &uevent);

private:
    /// A monitor whose socket is full.
    struct Backlog
    {
        UeventSender *sender = nullptr;
        ino_t monitor = 0;
        GObjectPointer<GSocket> socket;
        unsigned watch = 0;
        std::deque<std::string> messages;
    };

    void sendTo(const std::string &monitorPath, const std::string &message);
    void keepForLater(ino_t monitor, GObjectPointer<GSocket> socket, const std::string &message);
    /// False: nothing is left to send.
    bool flush(Backlog &backlog);

    std::string m_directory;
    std::uint64_t m_sequenceNumber = 0;
    std::map<ino_t, Backlog> m_backlogs;
};
