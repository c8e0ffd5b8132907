// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/Browser.h"
#include "browser/link/BrowserClient.h"
#include "browser/link/BrowserServer.h"
#include "browser/link/BrowserSituation.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>

/// The user's everyday browsers, reached through the extension in each. What one reading does to a
/// page travels as one plan; the thread waits for nothing.
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
    void forgetWaiting() override;
    void stopFilling(const QString &carrier) override;

    /// @param source gives the latest reading, for the person who asks for it; until then there is
    /// no scale
    void setWeightSource(std::function<BrowserWeight()> source);
    /// The browser in front has a field in front that follows the scale.
    bool isWeightFollowed() const;
    /// To that browser alone.
    void tellWeight(const BrowserWeight &weight);

    const BrowserSituation &situation() const { return m_situation; }
    /// For the status area.
    QString statusText() const { return m_situation.text(); }

signals:
    void statusTextChanged(const QString &text);
    /// Some field of the page in front was written with the texts of the latest reading, and shows
    /// that number.
    /// @param carrier the page's, as a person names it
    void pageWritten(const QString &carrier);

private:
    friend class LinkedApplication;

    void attach(LocalSocket *peer);
    void detach(BrowserClient *client);
    BrowserClient *frontClient() const;

    /// What the latest reading that a page has answered came to.
    struct PageReading
    {
        QPointer<BrowserClient> client;
        std::uint32_t page = 0;
        FilledFields fields;
    };

    /// Everything that is sent before the event loop comes round belongs to one reading.
    void joinReading();
    void endReading();
    /// Among the latest readings; -1 where the page has none.
    qsizetype placeOfReading(const BrowserClient *client, std::uint32_t page) const;
    bool isOfLatestReading(const QList<FillPlan> &plans) const;
    /// What the latest reading has put into that page.
    bool isWanted(const BrowserPage &page) const;
    void noteFields(BrowserClient *client, std::uint32_t page, const QList<FillPlan> &plans,
                    const std::optional<FilledFields> &fields);
    void updateSituation();
    /// A reading is under way: only a part of its fields is written.
    bool isFilling() const;
    BrowserSituation currentSituation() const;
    BrowserSituation situationOfPage(const BrowserClient &client, const BrowserPage &page) const;

    BrowserServer m_server;
    QList<BrowserClient *> m_clients;
    std::function<BrowserWeight()> m_weightSource;

    bool m_inReading = false;
    QList<FillPlan> m_latestPlans;     ///< of the latest reading, for whatever page
    QStringList m_wentOff;             ///< carriers that are not served any more since then
    QList<PageReading> m_pageReadings; ///< the page that answered last comes last
    /// While it runs, the page's latest reading tells how it stands.
    QTimer m_readingFade;
    QTimer m_silenceCheck;
    BrowserSituation m_situation;
};
