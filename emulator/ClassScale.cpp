// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ClassScale.h"

#include <algorithm>
#include <glib.h>
#include <utility>

namespace {

/// Stable at zero, in ounces.
const ClassScale::Report emptyPan{3, 2, 11, 0xFF, 0, 0};

} // namespace

ClassScale::ClassScale(Testbed &testbed, HidIdentity identity, Report zeroReport)
    : PluggableDevice(testbed, std::move(identity))
    , m_zeroReport(std::move(zeroReport))
    , m_reports{emptyPan}
{
}

ClassScale::~ClassScale()
{
    stop();
}

void ClassScale::plug()
{
    PluggableDevice::plug();
    setInterval(m_interval);
}

void ClassScale::unplug()
{
    stop();
    PluggableDevice::unplug();
}

void ClassScale::say(std::vector<Report> reports)
{
    m_reports = std::move(reports);
    m_next = 0;
}

void ClassScale::setInterval(unsigned milliseconds)
{
    m_interval = milliseconds;
    stop();
    if (m_interval == 0 || !isPlugged())
        return;
    const auto tick = [](gpointer scale) -> gboolean {
        static_cast<ClassScale *>(scale)->send();
        return G_SOURCE_CONTINUE;
    };
    m_source = g_timeout_add(m_interval, tick, this);
}

void ClassScale::stop()
{
    if (m_source != 0)
        g_source_remove(std::exchange(m_source, 0));
}

void ClassScale::send()
{
    node().deliver(m_reports.at(m_next));
    m_next = (m_next + 1) % m_reports.size();
}

void ClassScale::opened()
{
    PluggableDevice::opened();
    if (m_first.empty())
        return;
    // Once the program that opens it has its queue.
    const auto deliver = [](gpointer pointer) -> gboolean {
        auto *scale = static_cast<ClassScale *>(pointer);
        if (scale->isPlugged())
            scale->node().deliver(scale->m_first);
        return G_SOURCE_REMOVE;
    };
    g_idle_add(deliver, this);
}

HidrawDevice::Transfer ClassScale::receiveOutputReport(std::span<const std::uint8_t> report)
{
    m_written.emplace_back(report.begin(), report.end());
    if (m_zeroReport.empty() ||
        !std::equal(report.begin(), report.end(), m_zeroReport.begin(), m_zeroReport.end()))
        return Transfer::Failed;
    say({emptyPan});
    return Transfer::Done;
}
