// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/PluggableDevice.h"

#include <stdexcept>
#include <utility>

PluggableDevice::PluggableDevice(Testbed &testbed, HidIdentity identity)
    : m_testbed(testbed)
    , m_identity(std::move(identity))
{
}

void PluggableDevice::plug()
{
    if (m_placement)
        throw std::logic_error("already plugged in");
    m_placement = m_testbed.plug(m_identity, m_permission, *this);
}

void PluggableDevice::unplug()
{
    node();
    m_testbed.unplug(*std::exchange(m_placement, std::nullopt));
}

std::string PluggableDevice::nodePath() const
{
    return m_placement ? m_placement->chain.back().node : "none";
}

void PluggableDevice::setPermission(Permission wanted)
{
    m_permission = wanted;
    if (m_placement)
        node().setPermission(wanted);
}

void PluggableDevice::announceAgain(const std::string &action)
{
    node();
    m_testbed.announce(*m_placement, action);
}

HidrawNode &PluggableDevice::node()
{
    if (!m_placement)
        throw std::logic_error("not plugged in");
    return *m_placement->node;
}

HidrawDevice::Transfer PluggableDevice::receiveFeatureReport(std::span<const std::uint8_t>)
{
    return Transfer::Failed;
}

HidrawDevice::Transfer PluggableDevice::receiveOutputReport(std::span<const std::uint8_t>)
{
    return Transfer::Failed;
}

std::uint32_t PluggableDevice::reportDescriptorSize() const
{
    return static_cast<std::uint32_t>(m_identity.reportDescriptor.size());
}
