// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/FollowerLine.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class LocalSocket;
class ReadingReportDelegate;

/// Tells those that follow the readings of each one that is news, and gives a sign of life where
/// there is none. Without followers it costs nothing. A follower that reads slowly holds up nobody:
/// it gets the newest line once it has taken what it was sent.
class ReadingFeed : public QObject
{
    Q_OBJECT

public:
    /// @param source must outlive the object
    explicit ReadingFeed(const ReadingReportDelegate &source);

    /// At a time: what they cost is the window's.
    static constexpr qsizetype mostFollowers = 32;

    /// Whether it asks to follow, and may; then it does so from now on, and has been told how it
    /// stands.
    bool adopt(const QJsonObject &request, LocalSocket &peer);
    bool hasFollowers() const { return !m_followers.isEmpty(); }

signals:
    void followersChanged();

private:
    void add(LocalSocket &peer);
    QByteArray greeting();

    struct Follower
    {
        QPointer<LocalSocket> socket;
        bool isBehind = false; ///< the newest line waits for it
    };

    void tellNews();
    void tellAgain();
    void tellAll(const QByteArray &line);
    void tell(Follower &follower);
    void catchUp(const LocalSocket *socket);
    void removeTheGone();

    const ReadingReportDelegate &m_source;
    FollowerLines m_lines;
    QByteArray m_newest;
    QList<Follower> m_followers;
    QTimer m_silence;
};
