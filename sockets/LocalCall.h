// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <chrono>
#include <optional>

/// The calling end of a local socket, for one that waits for its answers, in lines. It needs no
/// event loop, and belongs to no thread.
class LocalCall
{
public:
    /// Of one line.
    static constexpr qsizetype longestLine = 64 * 1024;

    /// Tries for so long, as one that is busy may not take anybody in. One that does not listen is
    /// not waited for.
    LocalCall(const QString &path, std::chrono::milliseconds patience);
    ~LocalCall();
    LocalCall(const LocalCall &) = delete;
    LocalCall &operator=(const LocalCall &) = delete;

    /// The other end has not hung up, as far as is known.
    bool isConnected() const { return m_descriptor >= 0; }

    /// Somebody listens, but took nobody in for all that time.
    bool isBusy() const { return m_isBusy; }

    /// Waits until the system has taken all of it, for so long at most, and else hangs up.
    void send(const QByteArray &bytes, std::chrono::milliseconds patience);

    /// The next line, with its end. Nothing where none comes in time, or where the other end hangs
    /// up, or says more than a line may have.
    std::optional<QByteArray> line(std::chrono::milliseconds patience);

private:
    void connectTo(const QString &path, const QDeadlineTimer &deadline);
    /// @param events poll's
    bool waitFor(short events, const QDeadlineTimer &deadline) const;
    bool receive();
    std::optional<QByteArray> completeLine();
    void hangUp();

    int m_descriptor = -1;
    bool m_isBusy = false;
    QByteArray m_received;
};
