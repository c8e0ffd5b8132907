// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/Browser.h"
#include "export/BrowserClient.h"
#include "export/BrowserServer.h"
#include "export/BrowserSituation.h"

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
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

    /// Lets browsers attach. False where that is not possible; the link then stays without one.
    bool listenAt(const QString &path) { return server.listenAt(path); }

    /// For the status area.
    QString statusText() const { return situation.text(); }

signals:
    void statusTextChanged(const QString &text);

private:
    friend class LinkedApplication;

    std::unique_ptr<BrowserApplication> makeApplication() override;

    void attach(QLocalSocket *peer);
    void detach(BrowserClient *client);
    BrowserClient *frontClient() const;

    /// Everything that is sent before the event loop comes round belongs to one reading.
    void joinReading();
    void endReading();
    void countFields(const QStringList &texts, const QList<BrowserResult> &results);
    void updateSituation();
    /// A reading is under way: only a part of its fields is written.
    bool isFilling() const;
    BrowserSituation currentSituation() const;

    BrowserServer server;
    QList<BrowserClient *> clients;

    bool inReading = false;
    /// However many questions a reading has, they do not hold the thread for longer.
    QDeadlineTimer readingDeadline;
    /// A question was not answered in time: nothing more is sent before the next reading.
    bool readingAbandoned = false;
    QSet<QString> writtenFields;
    QTimer fillingFade;
    QTimer silenceCheck;
    BrowserSituation situation;
};
