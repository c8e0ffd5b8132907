// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserMessage.h"
#include "browser/link/BrowserWeight.h"
#include "browser/link/PeerLimits.h"

#include <QDeadlineTimer>
#include <QList>
#include <QMap>
#include <QObject>
#include <chrono>

class LocalSocket;

/// One attached browser. A peer that says anything but the agreed messages is disconnected.
class BrowserClient : public QObject
{
    Q_OBJECT

public:
    /// A page that lets this pass without an answer is busy, or stands behind an alert.
    static constexpr std::chrono::milliseconds answerTime{150};

    /// Takes over @p socket, which is connected.
    explicit BrowserClient(LocalSocket *socket, QObject *parent = nullptr);

    /// Both sides speak the same protocol.
    bool isLinked() const;
    /// Nothing before the extension has introduced itself.
    const std::optional<BrowserHello> &extension() const { return m_hello; }
    const std::optional<BrowserPage> &currentPage() const { return m_current; }
    /// By this program's own clock; nothing where no window had the focus so far.
    std::optional<std::chrono::steady_clock::time_point> lastFocus() const { return m_focus; }

    /// A plan has waited for longer than answerTime.
    bool isSilent(std::uint32_t page) const;
    /// A plan waits, and may still be answered in time.
    bool isAwaited(std::uint32_t page) const;

    /// Sends @p plan with the next flush, in one go with what is posted for the page until then.
    void post(std::uint32_t page, const FillPlan &plan);
    /// Sends what was posted. A page that has not answered its latest plan gets this one when it
    /// has, in the place of any that waits for that already: it is never sent more than one at a
    /// time.
    void flush();
    /// Of what was posted, nothing more is sent.
    void forgetWaiting();
    /// The same of what is meant for that carrier's page.
    void forgetWaiting(const QString &carrier);

    /// Some field in front is to follow the scale.
    bool followsWeight() const { return m_followsWeight; }
    void tell(const BrowserWeight &weight);

signals:
    void changed();
    void sent();
    /// Plans have been done. No fields: the page was gone.
    void ran(std::uint32_t page, const QList<FillPlan> &plans,
             const std::optional<FilledFields> &fields);
    /// The person wants the latest reading; tell() is the answer.
    void weightAsked();
    void closed();

private:
    struct Run
    {
        std::uint32_t id = 0;
        std::uint32_t page = 0;
        QList<FillPlan> plans;
        QDeadlineTimer answerDue;
    };

    void receive();
    bool handle(const BrowserMessage &message);
    bool handle(const BrowserHello &message);
    bool handle(const BrowserCurrent &message);
    bool handle(const BrowserFocus &message);
    bool handle(const BrowserRan &message);
    bool handle(WeightWish message);
    void disconnectPeer();
    void write(const QByteArray &message);
    void send(std::uint32_t page, const QList<FillPlan> &plans);
    bool isUnanswered(std::uint32_t page) const;

    LocalSocket *m_socket;
    PeerLimits *m_limits;
    BrowserFrameReader m_reader;
    std::optional<BrowserHello> m_hello;
    std::optional<BrowserPage> m_current;
    std::optional<std::chrono::steady_clock::time_point> m_focus;
    bool m_followsWeight = false;
    std::uint32_t m_lastRun = 0;
    QList<Run> m_unanswered;
    /// By page, those of one reading; what has been sent of them is in neither.
    using Waiting = QMap<std::uint32_t, QList<FillPlan>>;
    static void forget(Waiting &waiting, const QString &carrier);
    Waiting m_next; ///< only for pages with an unanswered plan
    Waiting m_posted;
};
