// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/FeatureLog.h"

#include "emulator/HexText.h"

#include <algorithm>
#include <glib.h>

FeatureLog::~FeatureLog()
{
    for (const Waiter &waiter : m_waiters)
        g_source_remove(waiter.timer);
}

void FeatureLog::record(std::span<const std::uint8_t> report)
{
    const std::chrono::duration<double> since = std::chrono::steady_clock::now() - m_start;
    gchar seconds[G_ASCII_DTOSTR_BUF_SIZE];
    g_ascii_formatd(seconds, sizeof seconds, "%.6f", since.count());
    m_recorded.push_back(std::string(seconds) + ' ' + hexText(report));
    ++m_received;
    for (auto waiter = m_waiters.begin(); waiter != m_waiters.end();) {
        const auto next = std::next(waiter);
        if (m_received >= waiter->target) {
            g_source_remove(waiter->timer);
            wake(waiter, Outcome::Reached);
        }
        waiter = next;
    }
}

void FeatureLog::clear()
{
    m_recorded.clear();
}

std::vector<std::string> FeatureLog::lines() const
{
    return m_recorded;
}

void FeatureLog::waitFor(int count, std::chrono::milliseconds timeout, Callback callback)
{
    if (count <= 0) {
        callback(Outcome::Reached);
        return;
    }
    m_waiters.push_back(
        {this, m_received + static_cast<std::uint64_t>(count), 0, std::move(callback)});
    Waiter &added = m_waiters.back();
    const auto expired = [](gpointer pointer) -> gboolean {
        auto *waiter = static_cast<Waiter *>(pointer);
        std::list<Waiter> &all = waiter->log->m_waiters;
        const auto found = std::find_if(all.begin(), all.end(),
                                        [waiter](const Waiter &each) { return &each == waiter; });
        waiter->log->wake(found, Outcome::TimedOut);
        return G_SOURCE_REMOVE;
    };
    added.timer = g_timeout_add(static_cast<guint>(timeout.count()), expired, &added);
}

void FeatureLog::wake(std::list<Waiter>::iterator waiter, Outcome outcome)
{
    const Callback callback = std::move(waiter->callback);
    m_waiters.erase(waiter);
    callback(outcome);
}
