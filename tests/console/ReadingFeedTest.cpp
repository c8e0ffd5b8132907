// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/ReadingFeed.h"
#include "console/SingleInstanceRequest.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>

namespace {

/// One that follows, and its connection.
class FeedPeer
{
public:
    FeedPeer()
    {
        m_server.listen(m_folder.filePath(QStringLiteral("socket")));
        m_socket.connectToServer(m_server.fullServerName());
        m_server.waitForNewConnection(-1);
        m_end = m_server.nextPendingConnection();
    }

    QLocalSocket &end() { return *m_end; }

    /// The words of all lines since the last call.
    QStringList heard()
    {
        QStringList words;
        while (m_socket.canReadLine() || m_socket.waitForReadyRead(0)) {
            const auto line = QJsonDocument::fromJson(m_socket.readLine()).object();
            words.append(line.value(QStringLiteral("text")).toString());
        }
        return words;
    }

private:
    QTemporaryDir m_folder;
    QLocalServer m_server;
    QLocalSocket m_socket;
    QLocalSocket *m_end = nullptr; ///< the server's
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
