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

    /// The words of all whole lines since the last call.
    QStringList heard()
    {
        receive();
        QStringList words;
        for (qsizetype end = m_received.indexOf('\n'); end >= 0; end = m_received.indexOf('\n')) {
            const auto object = QJsonDocument::fromJson(m_received.left(end)).object();
            words.append(object.value(QStringLiteral("text")).toString());
            m_received.remove(0, end + 1);
        }
        return words;
    }

private:
    void receive()
    {
        std::array<char, 4096> bytes;
        for (;;) {
            const ssize_t count = recv(m_ends[0], bytes.data(), bytes.size(), MSG_DONTWAIT);
            if (count <= 0)
                return;
            m_received.append(bytes.data(), count);
        }
    }

    QByteArray m_received;
    std::array<int, 2> m_ends{-1, -1};
    std::unique_ptr<LocalSocket> m_end; ///< the feed's
};

/// Two decimal digits, as they stand in a report's byte.
std::uint8_t packed(int number)
{
    return static_cast<std::uint8_t>(number / 10 * 16 + number % 10);
}

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

    /// The memory of the window and the other followers are none of its business.
    void oneThatReadsSlowlyGetsTheLatest()
    {
        constexpr qsizetype longestLine = 1024;
        LaunchedApplication app(LaunchedApplication::Scale::Present);
        app.stopPolling();
        ReadingFeed feed(*app.application.delegate());
        FeedPeer slow;
        FeedPeer quick;
        QVERIFY(feed.adopt(followRequest(), slow.end()));
        QVERIFY(feed.adopt(followRequest(), quick.end()));
        quick.heard();
        for (int units = 1; units <= 99; ++units) {
            app.read({0x01, packed(units), 0x02});
            LaunchedApplication::turn();
            QCOMPARE(quick.heard(), QStringList{QStringLiteral("%1 grams").arg(200 + units)});
            QVERIFY(slow.end().bytesToWrite() < longestLine);
        }
        QVERIFY(slow.end().bytesToWrite() > 0);

        QStringList late;
        const auto hearSome = [&] {
            late += slow.heard();
            return late.endsWith(QStringLiteral("299 grams"));
        };
        QTRY_VERIFY(hearSome());
        QVERIFY(late.size() < 50);
        QCOMPARE(slow.end().bytesToWrite(), 0);

        // And from then on each.
        app.read({0x01, 0x00, 0x07});
        LaunchedApplication::turn();
        QCOMPARE(slow.heard(), QStringList{QStringLiteral("700 grams")});
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
