// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "session/EndSignals.h"

#include <QMetaObject>
#include <QObject>
#include <array>
#include <chrono>
#include <pthread.h>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// Longer than what sends two to all of a session's processes takes for it.
constexpr auto sameEnd = 500ms;

constexpr std::array endSignals{SIGTERM, SIGINT, SIGHUP};

/// systemd ends a session with SIGTERM and SIGHUP, and a terminal that is closed sends the latter
/// more than once. A person who sends one more means it.
bool areOfOneEnd(int first, int next)
{
    const bool isTermination = first == SIGTERM && next == SIGHUP;
    return isTermination || (first == SIGHUP && (next == SIGTERM || next == SIGHUP));
}

bool isIgnored(int signal)
{
    struct sigaction current = {};
    return sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

/// What the signal does to a program that does not know it.
void endProcess(int signal)
{
    sigset_t alone;
    sigemptyset(&alone);
    sigaddset(&alone, signal);
    std::signal(signal, SIG_DFL);
    pthread_sigmask(SIG_UNBLOCK, &alone, nullptr);
    std::raise(signal);
}

} // namespace

EndSignals::EndSignals()
{
    sigemptyset(&m_signals);
    for (const int signal : endSignals) {
        if (isIgnored(signal))
            continue;
        sigaddset(&m_signals, signal);
        m_wakeUp = signal;
    }
    if (m_wakeUp == 0)
        return;
    pthread_sigmask(SIG_BLOCK, &m_signals, nullptr);
    m_thread = std::thread([this] { wait(); });
}

EndSignals::~EndSignals()
{
    if (!m_thread.joinable())
        return;
    m_isOver = true;
    pthread_kill(m_thread.native_handle(), m_wakeUp);
    m_thread.join();
}

void EndSignals::listen(QObject *context, std::function<void()> action)
{
    const std::lock_guard lock(m_mutex);
    m_context = context;
    m_action = std::move(action);
}

void EndSignals::stopListening()
{
    const std::lock_guard lock(m_mutex);
    m_context = nullptr;
}

void EndSignals::wait()
{
    using Clock = std::chrono::steady_clock;
    int first = 0;
    Clock::time_point told;
    for (;;) {
        const int signal = sigwaitinfo(&m_signals, nullptr);
        if (m_isOver)
            return;
        if (signal <= 0)
            continue;
        if (tell()) {
            first = signal;
            told = Clock::now();
        } else if (!areOfOneEnd(first, signal) || Clock::now() - told > sameEnd) {
            endProcess(signal);
        }
    }
}

/// False where nobody listens, or no longer.
bool EndSignals::tell()
{
    const std::lock_guard lock(m_mutex);
    if (m_context == nullptr)
        return false;
    QMetaObject::invokeMethod(std::exchange(m_context, nullptr), std::move(m_action),
                              Qt::QueuedConnection);
    return true;
}
