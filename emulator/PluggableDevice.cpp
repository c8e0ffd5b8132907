// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/PluggableDevice.h"

#include <stdexcept>
#include <utility>

PluggableDevice::PluggableDevice(Testbed &surroundings, HidIdentity whatItIs)
    : testbed(surroundings)
    , identity(std::move(whatItIs))
{
}

void PluggableDevice::plug()
{
    if (placement)
        throw std::logic_error("already plugged in");
    placement = testbed.plug(identity, permission, *this);
}

void PluggableDevice::unplug()
{
    node();
    testbed.unplug(*std::exchange(placement, std::nullopt));
}

std::string PluggableDevice::nodePath() const
{
    return placement ? placement->chain.back().node : "none";
}

void PluggableDevice::setPermission(Permission wanted)
{
    permission = wanted;
    if (placement)
        node().setPermission(wanted);
}

void PluggableDevice::announceAgain(const std::string &action)
{
    node();
    testbed.announce(*placement, action);
}

HidrawNode &PluggableDevice::node()
{
    if (!placement)
        throw std::logic_error("not plugged in");
    return *placement->node;
}

HidrawDevice::Transfer PluggableDevice::receiveFeatureReport(std::span<const std::uint8_t>)
{
    return Transfer::Failed;
}

std::uint32_t PluggableDevice::reportDescriptorSize() const
{
    return static_cast<std::uint32_t>(identity.reportDescriptor.size());
}
