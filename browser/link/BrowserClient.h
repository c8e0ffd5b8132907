// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserMessage.h"
#include "browser/link/PeerLimits.h"

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <chrono>

class QLocalSocket;

/// One attached browser. A peer that says anything but the agreed messages is disconnected.
class BrowserClient : public QObject
{
    Q_OBJECT

public:
    /// A page that lets this pass without an answer is sent nothing more until it answers or is
    /// gone: it may stand behind an alert, and would get all of it at once when that closes.
    static constexpr std::chrono::milliseconds answerTime{150};

    /// Takes over @p socket, which is connected.
    explicit BrowserClient(QLocalSocket *socket, QObject *parent = nullptr);

    /// Both sides speak the same protocol.
    bool isLinked() const;
    /// Nothing before the extension has introduced itself.
    const std::optional<BrowserHello> &extension() const { return m_hello; }
    const std::optional<BrowserPage> &currentPage() const { return m_current; }
    std::int64_t lastFocus() const { return m_focus; }

    /// A run has waited for longer than answerTime.
    bool isSilent(std::uint32_t page) const;
    /// A run waits, and may still be answered in time.
    bool isAwaited(std::uint32_t page) const;

    /// Runs @p text some time soon, after what was posted before.
    void post(std::uint32_t page, const QString &text);
    /// Runs @p questions after what was posted before, and waits. Holds the thread, without an
    /// event loop, until @p deadline at most. As many results, or none at all where the page does
    /// not answer in time or is gone.
    QList<BrowserResult> ask(std::uint32_t page, const QStringList &questions,
                             QDeadlineTimer deadline);
    /// Sends what was posted.
    void flush();

signals:
    void changed();
    void sent();
    /// A run of these texts has ended. No results: the page was gone.
    void ran(std::uint32_t page, const QStringList &texts, const QList<BrowserResult> &results);
    void closed();

private:
    struct Run
    {
        std::uint32_t id = 0;
        std::uint32_t page = 0;
        QStringList texts;
        QDeadlineTimer answerDue;
    };

    void receive();
    bool handle(const BrowserMessage &message);
    bool handle(const BrowserHello &message);
    bool handle(const BrowserCurrent &message);
    bool handle(const BrowserFocus &message);
    bool handle(const BrowserRan &message);
    void disconnectPeer();
    void write(const QByteArray &message);
    std::uint32_t send(std::uint32_t page, const QStringList &texts);
    bool isWaitingFor(std::uint32_t run) const;

    QLocalSocket *m_socket;
    PeerLimits *m_limits;
    BrowserFrameReader m_reader;
    std::optional<BrowserHello> m_hello;
    std::optional<BrowserPage> m_current;
    std::int64_t m_focus = 0;
    std::uint32_t m_lastRun = 0;
    QList<Run> m_waiting;
    std::uint32_t m_postedPage = 0;
    QStringList m_posted;
    std::uint32_t m_askedRun = 0;
    QList<BrowserResult> m_askedResults; ///< of what was posted with the questions, too
};
