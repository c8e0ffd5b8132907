// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/Browser.h"
#include "browser/link/BrowserClient.h"
#include "browser/link/BrowserServer.h"
#include "browser/link/BrowserSituation.h"

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>

/// The user's everyday browsers, reached through the extension in each. Assignments are posted,
/// questions are waited for; what one reading writes and asks arrives in order.
class BrowserLink : public QObject, public BrowserBridge
{
    Q_OBJECT

public:
    explicit BrowserLink(QObject *parent = nullptr);
    ~BrowserLink() override;

    /// Lets browsers attach. False where that is not possible; the link then stays without one, and
    /// its status text says why.
    bool listenAt(const QString &path);

    std::unique_ptr<BrowserApplication> application() override;

    const BrowserSituation &situation() const { return m_situation; }
    /// For the status area.
    QString statusText() const { return m_situation.text(); }

signals:
    void statusTextChanged(const QString &text);
    /// Some field of the page in front was written. @param carrier the page's, as a person names it
    void pageWritten(const QString &carrier);

private:
    friend class LinkedApplication;

    void attach(QLocalSocket *peer);
    void detach(BrowserClient *client);
    BrowserClient *frontClient() const;

    /// What the latest reading of a page came to.
    struct PageReading
    {
        /// Once an answer is missing, nothing more of the reading is sent to the page.
        enum class Course : std::uint8_t { Whole, PageGone, AnswerMissed };

        QPointer<BrowserClient> client;
        std::uint32_t page = 0;
        unsigned number = 0;
        Course course = Course::Whole;
        QSet<QString> writtenFields;
    };

    /// Everything that is sent before the event loop comes round belongs to one reading.
    void joinReading();
    void endReading();
    /// That of the reading under way, made anew if the page has had no part in it so far.
    PageReading &joinPage(BrowserClient *client, std::uint32_t page);
    /// Among the latest readings; -1 where the page has none.
    qsizetype placeOfReading(const BrowserClient *client, std::uint32_t page) const;
    void countFields(const BrowserClient *client, std::uint32_t page, const QStringList &texts,
                     const QList<BrowserResult> &results);
    void updateSituation();
    /// A reading is under way: only a part of its fields is written.
    bool isFilling() const;
    BrowserSituation currentSituation() const;
    BrowserSituation situationOfPage(const BrowserClient &client, const BrowserPage &page) const;

    BrowserServer m_server;
    QList<BrowserClient *> m_clients;

    bool m_inReading = false;
    /// However many questions a reading has, they do not hold the thread for longer.
    QDeadlineTimer m_readingDeadline;
    unsigned m_readingNumber = 0;
    QList<PageReading> m_pageReadings; ///< the page that was read last comes last
    /// While it runs, the page's latest reading tells how it stands.
    QTimer m_readingFade;
    QTimer m_silenceCheck;
    BrowserSituation m_situation;
};
