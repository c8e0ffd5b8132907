// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/Testbed.h"

#include <optional>
#include <string_view>

/// A HID device that comes and goes. By itself it takes no reports and sends none.
class PluggableDevice : public HidrawDevice
{
public:
    PluggableDevice(Testbed &surroundings, HidIdentity whatItIs);

    /// Throws std::logic_error when it is plugged in already.
    virtual void plug();
    /// Throws std::logic_error when it is not plugged in.
    virtual void unplug();
    bool isPlugged() const { return placement.has_value(); }
    std::string nodePath() const;

    /// Lasts through unplug and plug.
    void setPermission(Permission wanted);
    /// A further event for the device that is there: "add" or "change".
    void announceAgain(const std::string &action);

    /// Since the program started.
    int opens() const { return openCount; }
    int openHandles() const { return testbed.openHandles(*this); }

protected:
    /// Throws std::logic_error when it is not plugged in.
    HidrawNode &node();

    Transfer receiveFeatureReport(std::span<const std::uint8_t> report) override;
    Transfer inputTransfer() const override { return Transfer::Done; }
    void opened() override { ++openCount; }
    void readPending() override {}
    std::uint32_t reportDescriptorSize() const override;

private:
    Testbed &testbed;
    HidIdentity identity;
    Permission permission = Permission::Granted;
    std::optional<Testbed::Placement> placement;
    int openCount = 0;
};
