// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/BrowserLink.h"
#include "tests/export/BrowserPeer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

const QString box = QStringLiteral("document.getElementsByName('weight')[0].value");
const QString secondBox = QStringLiteral("document.getElementsByName('weight2')[0].value");
const QByteArray hello = R"({"hello":{"protocol":1,"version":"0.1.0","browser":"test"}})";
const QByteArray uspsPage = R"({"current":{"page":1,"host":"www.usps.com"}})";

/// Milliseconds that a wait may take longer than it is meant to, on a busy machine.
constexpr int lateness = 100;

QStringList textsOf(const std::optional<QJsonObject> &message)
{
    QStringList texts;
    if (message)
        for (const QJsonValue text :
             message->value(QLatin1String("run")).toObject()[QLatin1String("texts")].toArray())
            texts.append(text.toString());
    return texts;
}

int idOf(const std::optional<QJsonObject> &message)
{
    return message ? message->value(QLatin1String("run")).toObject()[QLatin1String("id")].toInt()
                   : -1;
}

} // namespace

/// The link over a real socket, with peers that behave and peers that do not.
class BrowserLinkTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<BrowserLink> link;

    QString path() const { return folder->filePath(QStringLiteral("browser.socket")); }

    /// A browser that has introduced itself, and what it then says.
    std::unique_ptr<BrowserPeer> attachedPeer(const QList<QByteArray> &messages = {uspsPage})
    {
        auto peer = std::make_unique<BrowserPeer>(path());
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
        peer->receive();
        peer->send(hello);
        for (const QByteArray &message : messages)
            peer->send(message);
        return peer;
    }

    void waitForStatus(const char *text)
    {
        QTRY_COMPARE(link->statusText(), QString::fromLatin1(text));
    }

    static std::shared_ptr<const BrowserTab> currentTab(const BrowserApplication &application)
    {
        const auto windows = application.windows();
        return windows.empty() ? nullptr : windows.front()->currentTab();
    }

    static BrowserResult run(const QString &text)
    {
        const auto application = BrowserBridge::application();
        return application->doJavaScript(text, currentTab(*application));
    }

    static constexpr int turnedAway = 0;
    static constexpr QFile::Permissions everybody{0x7777};

    /// What comes of user 65534's attempt to attach: an error number, or turnedAway.
    int outcomeForAnotherUser()
    {
        const QString socketPath = path();
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
        folder = std::make_unique<QTemporaryDir>();
        link = std::make_unique<BrowserLink>();
        QVERIFY(link->listenAt(path()));
    }

    void cleanup()
    {
        link.reset();
        folder.reset();
    }

    void withoutABrowser()
    {
        QCOMPARE(link->statusText(), QStringLiteral("No browser linked"));
        QVERIFY(BrowserBridge::application()->windows().empty());
        QVERIFY(!run(box));
    }

    void theProgramIntroducesItselfFirst()
    {
        BrowserPeer peer(path());
        QCoreApplication::processEvents();
        const auto message = peer.receive();
        QVERIFY(message);
        QCOMPARE(message->value(QLatin1String("hello"))[QLatin1String("protocol")].toInt(), 1);
        QCOMPARE(link->statusText(), QStringLiteral("No browser linked"));
        peer.send(hello);
        waitForStatus("Browser linked, waiting for a carrier page");
        QCOMPARE(BrowserBridge::application()->windows().size(), std::size_t(1));
        QVERIFY(!currentTab(*BrowserBridge::application()));
        peer.hangUp();
        waitForStatus("No browser linked");
    }

    void anotherProtocolIsSaidAndNotUsed()
    {
        BrowserPeer peer(path());
        peer.send(R"({"hello":{"protocol":2,"version":"7.0","browser":"test"}})");
        waitForStatus("Browser extension 7.0 does not fit this program");
        peer.send(uspsPage);
        QVERIFY(BrowserBridge::application()->windows().empty());
    }

    void answers_data()
    {
        QTest::addColumn<QJsonValue>("answer");
        QTest::addColumn<BrowserResult>("result");
        QTest::newRow("empty") << QJsonValue(QString()) << BrowserResult(QString());
        QTest::newRow("true") << QJsonValue(QStringLiteral("1"))
                              << BrowserResult(QStringLiteral("1"));
        QTest::newRow("no field") << QJsonValue() << BrowserResult();
    }

    void answers()
    {
        QFETCH(QJsonValue, answer);
        QFETCH(BrowserResult, result);
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        peer->answerWith([answer](const QJsonArray &) { return QJsonArray{answer}; });
        QCOMPARE(run(box), result);
    }

    void assignmentsAreNotWaitedForAndKeepTheirOrder()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        QElapsedTimer time;
        time.start();
        QVERIFY(!run(box + QStringLiteral("=1")));
        QVERIFY(!run(secondBox + QStringLiteral("=2")));
        QVERIFY(time.elapsed() < lateness);
        QVERIFY(!run(box));
        const auto first = peer->receive(0);
        QCOMPARE(textsOf(first),
                 (QStringList{box + QStringLiteral("=1"), secondBox + QStringLiteral("=2"), box}));
        QVERIFY(!peer->receive(0));
    }

    void whatIsPostedLastGoesOutWithTheEventLoop()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        run(box + QStringLiteral("=1"));
        QVERIFY(!peer->receive(0));
        QCoreApplication::processEvents();
        QCOMPARE(textsOf(peer->receive(0)), QStringList{box + QStringLiteral("=1")});
    }

    void aPageThatDoesNotAnswerIsLeftAlone()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        QElapsedTimer time;
        time.start();
        QVERIFY(!run(box));
        QVERIFY(time.elapsed() >= BrowserClient::answerTime.count());
        QVERIFY(time.elapsed() < BrowserClient::answerTime.count() + lateness);
        const auto question = peer->receive(0);
        QCOMPARE(textsOf(question), QStringList{box});

        time.restart();
        for (int more = 0; more < 44; ++more)
            QVERIFY(!run(more % 2 == 0 ? box : box + QStringLiteral("=1")));
        QVERIFY(time.elapsed() < lateness);
        waitForStatus("Page not answering");
        QVERIFY(!peer->receive(0));

        peer->sendRan(idOf(question), QJsonArray{QString()});
        waitForStatus("Browser linked, USPS page open");
        run(box + QStringLiteral("=1"));
        QCoreApplication::processEvents();
        QCOMPARE(textsOf(peer->receive()), QStringList{box + QStringLiteral("=1")});
    }

    void postsThatAreNotAnsweredAreNoticedToo()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        run(box + QStringLiteral("=1"));
        QCoreApplication::processEvents();
        const auto first = peer->receive(0);
        QCOMPARE(textsOf(first).size(), 1);
        waitForStatus("Page not answering");
        run(box + QStringLiteral("=2"));
        QCoreApplication::processEvents();
        QVERIFY(!peer->receive(0));
        peer->sendRan(idOf(first), QJsonValue());
        waitForStatus("Browser linked, USPS page open");
    }

    void aPageThatIsGoneDoesNotCountAsSilent()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        peer->answerWith([](const QJsonArray &) { return QJsonValue(); });
        QElapsedTimer time;
        time.start();
        QVERIFY(!run(box));
        QVERIFY(time.elapsed() < BrowserClient::answerTime.count());
        QCOMPARE(link->statusText(), QStringLiteral("Browser linked, USPS page open"));
    }

    void anotherPageOfTheSameBrowserIsServed()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        QVERIFY(!run(box));
        waitForStatus("Page not answering");
        peer->send(R"({"current":{"page":2,"host":"www.ups.com"}})");
        waitForStatus("Browser linked, UPS page open");
        run(box + QStringLiteral("=1"));
        QCoreApplication::processEvents();
        peer->receive();
        const auto message = peer->receive();
        QVERIFY(message);
        QCOMPARE(message->value(QLatin1String("run"))[QLatin1String("page")].toInt(), 2);
    }

    void manySlowAnswersDoNotAddUp()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        peer->answerWith([](const QJsonArray &texts) {
            std::this_thread::sleep_for(std::chrono::milliseconds(60));
            QJsonArray results;
            for (qsizetype text = 0; text < texts.size(); ++text)
                results.append(QString());
            return results;
        });
        QElapsedTimer time;
        time.start();
        for (int question = 0; question < 19; ++question)
            run(box);
        QVERIFY(time.elapsed() < BrowserClient::answerTime.count() + lateness);
    }

    void writtenFieldsAreCountedOnce()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        peer->answerWith([](const QJsonArray &texts) {
            QJsonArray results;
            for (const QJsonValue text : texts) {
                const bool found = !text.toString().contains(QLatin1String("weight2"));
                results.append(found ? QJsonValue(QStringLiteral("1")) : QJsonValue());
            }
            return results;
        });
        QStringList shown;
        connect(link.get(), &BrowserLink::statusTextChanged, link.get(),
                [&](const QString &text) { shown.append(text); });
        for (int reading = 0; reading < 3; ++reading) {
            run(box + QStringLiteral("=1"));
            run(secondBox + QStringLiteral("=1"));
            run(box + QStringLiteral("=2"));
            QCoreApplication::processEvents();
            waitForStatus("Filling USPS: 1 field");
        }
        waitForStatus("Browser linked, USPS page open");
        QCOMPARE(shown, (QStringList{QStringLiteral("Filling USPS: 1 field"),
                                     QStringLiteral("Browser linked, USPS page open")}));
    }

    void theBrowserWithTheLatestFocusIsInFront()
    {
        const auto one = attachedPeer({R"({"focused":1000})", uspsPage});
        waitForStatus("Browser linked, USPS page open");
        const auto other =
            attachedPeer({R"({"current":{"page":1,"host":"www.ups.com"}})", R"({"focused":2000})"});
        waitForStatus("Browser linked, UPS page open");
        one->send(R"({"focused":3000})");
        waitForStatus("Browser linked, USPS page open");
        other->send(R"({"focused":4000})");
        waitForStatus("Browser linked, UPS page open");
        other->hangUp();
        waitForStatus("Browser linked, USPS page open");
    }

    void aBrowserThatGoesWhileItIsAskedHoldsNothingUp()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        std::thread leaving([&] {
            peer->receive();
            peer->hangUp();
        });
        QElapsedTimer time;
        time.start();
        QVERIFY(!run(box));
        QVERIFY(time.elapsed() < BrowserClient::answerTime.count());
        leaving.join();
        QVERIFY(!run(box));
        waitForStatus("No browser linked");
    }

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
            << browserFrame(hello) + browserFrame(R"({"ran":{"id":9,"results":[]}})");
    }

    void misbehaviourEndsTheConnection()
    {
        QFETCH(QByteArray, stream);
        const auto neighbour = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        BrowserPeer peer(path());
        std::thread sending([&] { peer.sendBytes(stream); });
        QTRY_VERIFY(peer.isClosedWithin(1));
        sending.join();
        QCOMPARE(link->statusText(), QStringLiteral("Browser linked, USPS page open"));
    }

    void theWrongNumberOfResultsEndsTheConnection()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        peer->answerWith([](const QJsonArray &) { return QJsonArray{QString(), QString()}; });
        QVERIFY(!run(box));
        waitForStatus("No browser linked");
    }

    void aPeerThatSaysNothingIsLetGo()
    {
        BrowserPeer peer(path());
        QTRY_VERIFY_WITH_TIMEOUT(peer.isClosedWithin(1), 10000);
    }

    void onlySoManyPeersAreTakenIn()
    {
        std::vector<std::unique_ptr<BrowserPeer>> peers;
        for (int count = 0; count < 16; ++count)
            peers.push_back(attachedPeer({}));
        BrowserPeer late(path());
        QTRY_VERIFY(late.isClosedWithin(1));
        waitForStatus("Browser linked, waiting for a carrier page");
        peers.pop_back();
        QTRY_VERIFY(attachedPeer({})->isConnected());
    }

    void aSecondProgramLeavesTheSocketAlone()
    {
        BrowserLink second;
        QVERIFY(!second.listenAt(path()));
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
    }

    void aSocketLeftBehindIsReplaced()
    {
        const QString left = folder->filePath(QStringLiteral("left.socket"));
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
        QCOMPARE(stat(path().toLocal8Bit().constData(), &socketFile), 0);
        QCOMPARE(socketFile.st_mode & 0777, 0600U);
        if (geteuid() != 0)
            QSKIP("Only root can act as another user");
        QVERIFY(QFile::setPermissions(folder->path(), everybody));
        QCOMPARE(outcomeForAnotherUser(), EACCES);
        // Even where the file's permissions are lost, a stranger is not spoken to.
        QVERIFY(QFile::setPermissions(path(), everybody));
        QCOMPARE(outcomeForAnotherUser(), turnedAway);
    }

    void noFolderNoLink() { QVERIFY(!BrowserLink().listenAt(QString())); }
};

QTEST_GUILESS_MAIN(BrowserLinkTest)
#include "BrowserLinkTest.moc"
