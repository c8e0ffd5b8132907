// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/PluggableDevice.h"

#include <vector>

/// A scale of the USB class for points of sale: it sends by itself, as often as it is told to, and
/// obeys its zero.
class ClassScale : public PluggableDevice
{
public:
    using Report = std::vector<std::uint8_t>;

    /// @param zeroReport by which its pan is taken for empty; empty: it has none
    ClassScale(Testbed &testbed, HidIdentity identity, Report zeroReport);
    ~ClassScale() override;

    void plug() override;
    void unplug() override;

    /// From here on these are sent in turn. Reports of the weight and others, in whatever bytes.
    void say(std::vector<Report> reports);
    /// What a program that opens the scale is sent before anything else; empty: nothing.
    void sayFirst(Report report) { m_first = std::move(report); }
    /// Milliseconds between two reports; 0: it is silent.
    void setInterval(unsigned milliseconds);

    /// Output reports received so far, with their numbers.
    const std::vector<Report> &written() const { return m_written; }

private:
    Transfer receiveOutputReport(std::span<const std::uint8_t> report) override;
    void opened() override;
    void send();
    void stop();

    Report m_zeroReport;
    std::vector<Report> m_reports;
    Report m_first;
    std::size_t m_next = 0;
    unsigned m_interval = 100;
    unsigned m_source = 0; ///< of the main loop
    std::vector<Report> m_written;
};
