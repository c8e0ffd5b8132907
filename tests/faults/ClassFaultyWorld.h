// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/ClassScaleDevices.h"
#include "tests/support/LaunchedApplication.h"

#include <chrono>
#include <memory>

/// The running program with a scale of the class that says 1234 g ten times a second, and what can
/// go wrong with it. Nothing here lets the event loop run but pass().
class ClassFaultyWorld
{
public:
    enum class Notice { Sent, Dropped };

    ClassFaultyWorld();
    ~ClassFaultyWorld();

    /// Time goes on, and the scale sends in it.
    void pass(std::chrono::milliseconds time);

    void plug(Notice notice = Notice::Sent);
    void unplug(Notice notice = Notice::Sent);
    /// Its node's permissions may be others now.
    void announceChange();
    bool isPlugged() const { return m_plugged; }
    void setSending(bool sends) { m_sends = sends; }
    /// What the scale is to those who open and read it.
    ClassScaleDevices::Scale &scale() { return m_devices.scales.at(m_node); }
    /// A second one, which is read as the first one is; it has to be plugged in by its own name.
    ClassScaleDevices::Scale &other() { return m_devices.scales.at(m_otherNode); }
    static const fakeudev::Device otherDevice;

private:
    void describe(const QString &node, const char *name);
    /// Whoever has it open has a dead node from now on.
    void endConnections();

    const QString m_node = QStringLiteral("/dev/hidraw5");
    const QString m_otherNode = QStringLiteral("/dev/hidraw6");
    std::unique_ptr<ClassScaleDevices> m_owned = std::make_unique<ClassScaleDevices>();
    ClassScaleDevices &m_devices = *m_owned;
    bool m_plugged = false;
    bool m_sends = true;

public:
    LaunchedApplication app;
};
