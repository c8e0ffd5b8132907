// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/faults/ClassFaultyWorld.h"

#include "emulator/ClassScaleDescriptors.h"

#include <utility>

using namespace std::chrono_literals;

namespace {

/// Between two reports.
constexpr auto sendingInterval = 100ms;

/// The kernel keeps no more.
constexpr std::size_t mostKept = 64;

const fakeudev::Device device{"hidraw5", 0x1234, 0x0001};

/// Report 3 of the class: at rest, in grams.
const ClassScaleDevices::Report grams1234{3, 4, 2, 0, 0xD2, 0x04};

void send(ClassScaleDevices::Scale &scale)
{
    if (scale.openConnections > 0 && scale.reports.size() < mostKept)
        scale.reports.push_back(grams1234);
}

} // namespace

const fakeudev::Device ClassFaultyWorld::otherDevice{"hidraw6", 0x1234, 0x0002};

ClassFaultyWorld::ClassFaultyWorld()
    : app(LaunchedApplication::Scale::Absent, {}, {}, nullptr, std::move(m_owned))
{
    describe(m_node, "One Scale");
    describe(m_otherNode, "Other Scale");
}

ClassFaultyWorld::~ClassFaultyWorld() = default;

void ClassFaultyWorld::describe(const QString &node, const char *name)
{
    ClassScaleDevices::Scale &described = m_devices.scales[node];
    described.descriptor = QByteArray(reinterpret_cast<const char *>(classScaleDescriptor.data()),
                                      static_cast<qsizetype>(classScaleDescriptor.size()));
    described.name = QString::fromLatin1(name);
}

void ClassFaultyWorld::pass(std::chrono::milliseconds time)
{
    for (auto passed = 0ms; passed < time; passed += sendingInterval) {
        if (m_plugged && m_sends)
            send(scale());
        send(other());
        LaunchedApplication::pass(sendingInterval, sendingInterval);
    }
}

void ClassFaultyWorld::endConnections()
{
    ++scale().plugs;
    scale().reports.clear();
}

void ClassFaultyWorld::plug(Notice notice)
{
    if (std::exchange(m_plugged, true))
        return;
    if (notice == Notice::Sent)
        fakeudev::plug(device);
    else
        fakeudev::place(device);
    if (notice == Notice::Dropped)
        fakeudev::overflow();
}

void ClassFaultyWorld::announceChange()
{
    fakeudev::announce(device, "change");
}

void ClassFaultyWorld::unplug(Notice notice)
{
    if (!std::exchange(m_plugged, false))
        return;
    endConnections();
    fakeudev::unplug(device.name);
    if (notice == Notice::Dropped)
        fakeudev::overflow();
}
