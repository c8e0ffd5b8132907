// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/browser/link/BrowserFixture.h"
#include "tests/support/TestClasses.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTimer>
#include <atomic>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

QByteArray upsPageNumbered(int number)
{
    return R"({"current":{"page":)" + QByteArray::number(number) + R"(,"host":"www.ups.com"}})";
}

} // namespace

/// The socket, and peers that do not behave: whoever comes, the browser that is attached is served.
class BrowserServerTest : public QObject
{
    Q_OBJECT

private:
    std::optional<BrowserFixture> m_fixture;

    static constexpr int turnedAway = 0;
    static constexpr QFile::Permissions everybody{0x7777};

    /// What comes of user 65534's attempt to attach: an error number, or turnedAway.
    int outcomeForAnotherUser()
    {
        const QString socketPath = m_fixture->path();
        const pid_t child = fork();
        if (child == 0) {
            if (setuid(65534) != 0)
                _exit(errno);
            BrowserPeer peer(socketPath);
            if (!peer.isConnected())
                _exit(errno);
            _exit(peer.receive() ? EISCONN : turnedAway);
        }
        int status = 0;
        const auto ended = [&] { return waitpid(child, &status, WNOHANG) == child; };
        if (!QTest::qWaitFor(ended, 2 * BrowserPeer::patience))
            return -1;
        return WEXITSTATUS(status);
    }

private slots:
    void init()
    {
        m_fixture.emplace();
        QVERIFY(m_fixture->listening);
    }

    void cleanup() { m_fixture.reset(); }

    void misbehaviourEndsTheConnection_data()
    {
        QTest::addColumn<QByteArray>("stream");
        QTest::newRow("garbage") << QByteArray("GET / HTTP/1.1\r\nHost: localhost\r\n\r\n");
        QTest::newRow("no message") << QByteArray(4, '\0');
        QTest::newRow("gigabytes") << QByteArray(4, '\x7F') + QByteArray(200000, 'x');
        QTest::newRow("no JSON") << browserFrame("hello");
        QTest::newRow("out of order") << browserFrame(uspsPage);
        QTest::newRow("two greetings") << browserFrame(hello) + browserFrame(hello);
        QTest::newRow("unknown message") << browserFrame(hello) + browserFrame(R"({"quit":1})");
        QTest::newRow("answer to nothing")
            << browserFrame(hello) + browserFrame(R"({"ran":{"id":9,"fields":null}})");
    }

    void misbehaviourEndsTheConnection()
    {
        QFETCH(QByteArray, stream);
        const auto neighbour = m_fixture->attachedPeer();
        m_fixture->waitForStatus("Browser linked, USPS page open");
        BrowserPeer peer(m_fixture->path());
        std::thread sending([&] { peer.sendBytes(stream); });
        QTRY_VERIFY(peer.isClosedWithin(1));
        sending.join();
        QCOMPARE(m_fixture->link.statusText(), QStringLiteral("Browser linked, USPS page open"));
    }

    void aPeerThatSaysNothingIsLetGo()
    {
        BrowserPeer peer(m_fixture->path());
        QTRY_VERIFY_WITH_TIMEOUT(peer.isClosedWithin(1), 10000);
    }

    void aTalkativePeerHoldsNothingUp()
    {
        const auto peer = m_fixture->attachedPeer();
        m_fixture->waitForStatus("Browser linked, USPS page open");
        std::atomic<bool> talking = true;
        std::thread talk([&] {
            while (talking && peer->send(R"({"focused":1000})")) {
            }
        });
        QElapsedTimer time;
        time.start();
        QVERIFY(m_fixture->post({{{assignment}}}));
        QVERIFY(time.elapsed() < lateness);
        bool turned = false;
        QTimer::singleShot(0, &m_fixture->link, [&] { turned = true; });
        QTRY_VERIFY(turned);
        talking = false;
        peer->hangUp();
        talk.join();
        m_fixture->waitForStatus("No browser linked");
    }

    /// Each reading finds another page, and none of them is answered.
    void aPeerThatNeverAnswersIsLetGo()
    {
        const auto peer = m_fixture->attachedPeer();
        m_fixture->waitForStatus("Browser linked, USPS page open");
        int page = 1;
        while (m_fixture->link.statusText() != QLatin1String("No browser linked")) {
            QVERIFY(++page < 1000);
            peer->send(upsPageNumbered(page));
            QCoreApplication::processEvents();
            m_fixture->fill(assignment);
        }
        QVERIFY(peer->isClosedWithin(BrowserPeer::patience));
    }

    void aPeerThatTakesNothingInIsLetGo()
    {
        const auto peer = m_fixture->attachedPeer();
        m_fixture->waitForStatus("Browser linked, USPS page open");
        const QString longText = weightBox + QLatin1Char('=') + QString(60000, QLatin1Char('1'));
        int page = 1;
        while (m_fixture->link.statusText() != QLatin1String("No browser linked")) {
            QVERIFY(++page < 30); // fewer than may stay unanswered
            peer->send(upsPageNumbered(page));
            QCoreApplication::processEvents();
            m_fixture->fill(longText);
        }
    }

    void onlySoManyPeersAreTakenIn()
    {
        std::vector<std::unique_ptr<BrowserPeer>> peers;
        for (int count = 0; count < 16; ++count)
            peers.push_back(m_fixture->attachedPeer({}));
        BrowserPeer late(m_fixture->path());
        QTRY_VERIFY(late.isClosedWithin(1));
        m_fixture->waitForStatus("Browser linked, waiting for a carrier page");
        peers.pop_back();
        QTRY_VERIFY(m_fixture->attachedPeer({})->isConnected());
    }

    void aSecondProgramLeavesTheSocketAlone()
    {
        BrowserLink second;
        QVERIFY(!second.listenAt(m_fixture->path()));
        const auto peer = m_fixture->attachedPeer();
        m_fixture->waitForStatus("Browser linked, USPS page open");
    }

    void whoHasGoneAlreadyTakesNobodysPlace()
    {
        for (int gone = 0; gone <= PeerLimits::mostPeers; ++gone)
            QVERIFY(BrowserPeer(m_fixture->path()).isConnected());
        const auto peer = m_fixture->attachedPeer();
        m_fixture->waitForStatus("Browser linked, USPS page open");
    }

    void aSocketLeftBehindIsReplaced()
    {
        const QString left = m_fixture->folder.filePath(QStringLiteral("left.socket"));
        const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, left.toLocal8Bit().constData(), sizeof address.sun_path);
        QCOMPARE(bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        close(descriptor);
        BrowserLink next;
        QVERIFY(next.listenAt(left));
        QVERIFY(BrowserPeer(left).isConnected());
    }

    void nobodyElseCanOpenTheSocket()
    {
        struct stat socketFile = {};
        QCOMPARE(stat(m_fixture->path().toLocal8Bit().constData(), &socketFile), 0);
        QCOMPARE(socketFile.st_mode & 0777, 0600U);
        if (geteuid() != 0)
            QSKIP("Only root can act as another user");
        QVERIFY(QFile::setPermissions(m_fixture->folder.path(), everybody));
        QCOMPARE(outcomeForAnotherUser(), EACCES);
        // Even where the file's permissions are lost, a stranger is not spoken to.
        QVERIFY(QFile::setPermissions(m_fixture->path(), everybody));
        QCOMPARE(outcomeForAnotherUser(), turnedAway);
    }

    void noFolderNoLink() { QVERIFY(!BrowserLink().listenAt(QString())); }
};

TEST_CLASS_INSIDE(QCoreApplication, BrowserServerTest)
#include "BrowserServerTest.moc"
