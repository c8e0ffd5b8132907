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
    PluggableDevice(Testbed &testbed, HidIdentity identity);

    /// Throws std::logic_error when it is plugged in already.
    virtual void plug();
    /// Throws std::logic_error when it is not plugged in.
    virtual void unplug();
    bool isPlugged() const { return m_placement.has_value(); }
    std::string nodePath() const;

    /// Lasts through unplug and plug.
    void setPermission(Permission wanted);
    /// A further event for the device that is there: "add" or "change".
    void announceAgain(const std::string &action);

    /// Since the program started.
    int opens() const { return m_openCount; }
    int openHandles() const { return m_testbed.openHandles(*this); }

protected:
    /// Throws std::logic_error when it is not plugged in.
    HidrawNode &node();

    Transfer receiveFeatureReport(std::span<const std::uint8_t> report) override;
    Transfer receiveOutputReport(std::span<const std::uint8_t> report) override;
    Transfer inputTransfer() const override { return Transfer::Done; }
    void opened() override { ++m_openCount; }
    void readPending() override {}
    std::uint32_t reportDescriptorSize() const override;

private:
    Testbed &m_testbed;
    HidIdentity m_identity;
    Permission m_permission = Permission::Granted;
    std::optional<Testbed::Placement> m_placement;
    int m_openCount = 0;
};
