// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/ReadingFeed.h"
#include "console/SingleInstanceRequest.h"
#include "sockets/LocalSocket.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QJsonDocument>
#include <array>
#include <memory>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// One that follows, and its connection.
class FeedPeer
{
public:
    FeedPeer()
    {
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()) == 0)
            m_end = std::make_unique<LocalSocket>(m_ends[1]);
    }
    ~FeedPeer() { close(m_ends[0]); }
    FeedPeer(const FeedPeer &) = delete;
    FeedPeer &operator=(const FeedPeer &) = delete;

    LocalSocket &end() { return *m_end; }

    /// The words of all lines since the last call.
    QStringList heard()
    {
        std::array<char, 4096> bytes;
        const ssize_t count = recv(m_ends[0], bytes.data(), bytes.size(), MSG_DONTWAIT);
        QStringList words;
        if (count <= 0)
            return words;
        for (const QByteArray &line : QByteArray(bytes.data(), count - 1).split('\n')) {
            const auto object = QJsonDocument::fromJson(line).object();
            words.append(object.value(QStringLiteral("text")).toString());
        }
        return words;
    }

private:
    std::array<int, 2> m_ends{-1, -1};
    std::unique_ptr<LocalSocket> m_end; ///< the feed's
};

} // namespace

/// Whom the process that has the scale tells what.
class ReadingFeedTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    /// Until a reading is announced, the panel still shows the one before.
    void oneThatComesMeanwhileDisturbsNobody()
    {
        LaunchedApplication app(LaunchedApplication::Scale::Present);
        app.stopPolling();
        app.read({0x01, 0x00, 0x05});
        LaunchedApplication::turn();
        ReadingFeed feed(*app.application.delegate());
        FeedPeer first;
        QVERIFY(feed.adopt(followRequest(), first.end()));
        QCOMPARE(first.heard(), QStringList{QStringLiteral("500 grams")});

        app.read({0x01, 0x00, 0x07});
        FeedPeer second;
        QVERIFY(feed.adopt(followRequest(), second.end()));
        QCOMPARE(second.heard(), QStringList{QStringLiteral("500 grams")});
        LaunchedApplication::turn();
        QCOMPARE(first.heard(), QStringList{QStringLiteral("700 grams")});
        QCOMPARE(second.heard(), QStringList{QStringLiteral("700 grams")});
    }

    void thereIsAPlaceForSoMany()
    {
        LaunchedApplication app(LaunchedApplication::Scale::Present);
        ReadingFeed feed(*app.application.delegate());
        std::vector<std::unique_ptr<FeedPeer>> peers;
        for (qsizetype number = 0; number < ReadingFeed::mostFollowers; ++number) {
            peers.push_back(std::make_unique<FeedPeer>());
            QVERIFY(feed.adopt(followRequest(), peers.back()->end()));
        }
        FeedPeer further;
        QVERIFY(!feed.adopt(followRequest(), further.end()));
    }
};

TEST_CLASS(ReadingFeedTest)
#include "ReadingFeedTest.moc"
