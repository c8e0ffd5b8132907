// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <csignal>
#include <functional>
#include <mutex>
#include <thread>

class QObject;

/// SIGTERM, SIGINT and SIGHUP. The first one, while somebody listens, is told to the listener.
/// SIGTERM and SIGHUP within half a second belong together, and SIGHUP twice: systemd ends a
/// session with the one and the other, a closing terminal with the latter. Any other ends the
/// process at once, as it would without this object, even while the main thread is held. No system
/// call of any other thread is interrupted. Those that whoever started the program has it ignore
/// stay ignored.
class EndSignals
{
public:
    /// To be made before any other thread, by the main thread: threads inherit what it sets.
    EndSignals();
    ~EndSignals();
    EndSignals(const EndSignals &) = delete;
    EndSignals &operator=(const EndSignals &) = delete;

    /// @param action done once at most, by @p context's thread in its event loop
    void listen(QObject *context, std::function<void()> action);
    /// To be called before the context goes.
    void stopListening();

private:
    void wait();
    bool tell();

    sigset_t m_signals{};
    std::mutex m_mutex;
    QObject *m_context = nullptr; ///< null while nobody listens
    std::function<void()> m_action;
    std::atomic<bool> m_isOver = false;
    std::thread m_thread;
    int m_wakeUp = 0; ///< one of the signals; 0 if all are ignored
};
