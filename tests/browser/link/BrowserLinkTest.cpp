// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/browser/link/BrowserFixture.h"
#include "tests/support/LogCapture.h"

#include <QElapsedTimer>
#include <atomic>

namespace {

const QString secondBox = QStringLiteral("document.getElementsByName('weight2')[0].value");

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

int pageOf(const std::optional<QJsonObject> &message)
{
    return message ? message->value(QLatin1String("run")).toObject()[QLatin1String("page")].toInt()
                   : -1;
}

} // namespace

/// What the program asks of the link, over a real socket.
class BrowserLinkTest : public QObject
{
    Q_OBJECT

private:
    std::optional<BrowserFixture> m_fixture;

    std::unique_ptr<BrowserPeer> attachedPeer(const QList<QByteArray> &messages = {uspsPage})
    {
        return m_fixture->attachedPeer(messages);
    }

    BrowserResult run(const QString &text) { return m_fixture->run(text); }
    void waitForStatus(const char *text) { m_fixture->waitForStatus(text); }

private slots:
    void init()
    {
        m_fixture.emplace();
        QVERIFY(m_fixture->listening);
    }

    void cleanup() { m_fixture.reset(); }

    void withoutABrowser()
    {
        QCOMPARE(m_fixture->link.statusText(), QStringLiteral("No browser linked"));
        QVERIFY(m_fixture->link.application()->windows().empty());
        QVERIFY(!run(box));
    }

    void theProgramIntroducesItselfFirst()
    {
        BrowserPeer peer(m_fixture->path());
        QCoreApplication::processEvents();
        const auto message = peer.receive();
        QVERIFY(message);
        QCOMPARE(message->value(QLatin1String("hello"))[QLatin1String("protocol")].toInt(), 1);
        QCOMPARE(m_fixture->link.statusText(), QStringLiteral("No browser linked"));
        peer.send(hello);
        waitForStatus("Browser linked, waiting for a carrier page");
        QCOMPARE(m_fixture->link.application()->windows().size(), std::size_t(1));
        QVERIFY(!currentTab(*m_fixture->link.application()));
        peer.hangUp();
        waitForStatus("No browser linked");
    }

    void anotherProtocolIsSaidAndNotUsed()
    {
        BrowserPeer peer(m_fixture->path());
        peer.send(R"({"hello":{"protocol":2,"version":"7.0","browser":"test"}})");
        waitForStatus("Browser extension 7.0 does not fit this program");
        peer.send(uspsPage);
        QVERIFY(m_fixture->link.application()->windows().empty());
    }

    /// The status area tells of the one that is linked.
    void anotherProtocolBesideALinkedBrowserIsLogged()
    {
        const LogCapture log;
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        BrowserPeer stranger(m_fixture->path());
        stranger.send(R"({"hello":{"protocol":2,"version":"7.0","browser":"Firefox"}})");
        const QStringList expected{
            QStringLiteral("Browser link: the extension 7.0 in Firefox does not fit this program")};
        QTRY_COMPARE(LogCapture::lines(), expected);
        QCOMPARE(m_fixture->link.statusText(), QStringLiteral("Browser linked, USPS page open"));
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

        // It is not known to keep up before it has taken in a whole reading.
        QStringList shown;
        connect(&m_fixture->link, &BrowserLink::statusTextChanged, &m_fixture->link,
                [&](const QString &text) { shown.append(text); });
        peer->sendRan(idOf(question), QJsonArray{QString()});
        QCoreApplication::processEvents(); // the answer arrives
        run(box + QStringLiteral("=1"));
        QCoreApplication::processEvents();
        const auto next = peer->receive();
        QCOMPARE(textsOf(next), QStringList{box + QStringLiteral("=1")});
        peer->sendRan(idOf(next), QJsonArray{QStringLiteral("1")});
        waitForStatus("Filling USPS: 1 field");
        QCOMPARE(shown, QStringList{QStringLiteral("Filling USPS: 1 field")});
    }

    void aPageThatNobodyFillsAnyMoreIsMerelyOpen()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        QVERIFY(!run(box));
        waitForStatus("Page not answering");
        peer->sendRan(idOf(peer->receive(0)), QJsonArray{QString()});
        waitForStatus("Browser linked, USPS page open");
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
        QCOMPARE(m_fixture->link.statusText(), QStringLiteral("Browser linked, USPS page open"));
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

    /// The user turns to another tab while the program waits for the first.
    void aTabThatIsFetchedLaterInAReadingIsAnotherPage()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        const auto application = m_fixture->link.application();
        const auto first = currentTab(*application);
        peer->send(R"({"current":{"page":2,"host":"www.ups.com"}})");
        QVERIFY(!application->doJavaScript(box, first));
        const auto question = peer->receive(0);
        QCOMPARE(pageOf(question), 1);

        const auto second = currentTab(*application);
        application->doJavaScript(box + QStringLiteral("=1"), first);
        application->doJavaScript(box + QStringLiteral("=2"), second);
        QCoreApplication::processEvents();
        const auto fill = peer->receive(0);
        QCOMPARE(pageOf(fill), 2);
        QCOMPARE(textsOf(fill), QStringList{box + QStringLiteral("=2")});
        QVERIFY(!peer->receive(0));
        peer->sendRan(idOf(fill), QJsonArray{QStringLiteral("2")});
        waitForStatus("Filling UPS: 1 field");

        // The page that was left has still not taken in a reading.
        peer->sendRan(idOf(question), QJsonArray{QString()});
        peer->send(uspsPage);
        waitForStatus("Page not answering");
    }

    void theCountIsThatOfThePage()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        QStringList shown;
        connect(&m_fixture->link, &BrowserLink::statusTextChanged, &m_fixture->link,
                [&](const QString &text) { shown.append(text); });
        run(box + QStringLiteral("=1"));
        QCoreApplication::processEvents();
        peer->sendRan(idOf(peer->receive()), QJsonArray{QStringLiteral("1")});
        waitForStatus("Filling USPS: 1 field");
        peer->send(R"({"current":{"page":2,"host":"www.ups.com"}})");
        waitForStatus("Browser linked, UPS page open");
        const auto other = attachedPeer(
            {R"({"current":{"page":1,"host":"www.fedex.com"}})", R"({"focused":2000})"});
        waitForStatus("Browser linked, FedEx page open");
        for (const QString &text : std::as_const(shown))
            QVERIFY(text == shown.front() || !text.startsWith(QLatin1String("Filling")));
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

    void whatCannotBeWaitedForIsNotAsked()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        std::atomic<int> asked = 0;
        peer->answerWith([&asked](const QJsonArray &texts) {
            ++asked;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            return QJsonArray(texts);
        });
        for (int question = 0; question < 19; ++question)
            run(box);
        // One is answered, one waits in vain, and may still be answered in time for the next.
        QVERIFY(asked <= 2);
        waitForStatus("Page not answering");
        QVERIFY(asked <= 2);
    }

    void expectedQuestionsTravelTogether()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        QStringList received;
        peer->answerWith([&received](const QJsonArray &texts) {
            QJsonArray results;
            for (const QJsonValue text : texts) {
                received.append(text.toString());
                results.append(text);
            }
            received.append(QStringLiteral("end"));
            return results;
        });
        const auto application = m_fixture->link.application();
        const auto tab = currentTab(*application);
        const QString assignment = box + QStringLiteral("=1");
        for (int time = 0; time < 2; ++time) {
            QVERIFY(!application->doJavaScript(assignment, tab));
            QCOMPARE(application->ask({box, secondBox}, tab),
                     (QList<BrowserResult>{box, secondBox}));
        }
        peer->hangUp();
        waitForStatus("No browser linked");
        QCOMPARE(received, (QStringList{assignment, box, secondBox, QStringLiteral("end"),
                                        assignment, box, secondBox, QStringLiteral("end")}));
    }

    /// An empty box beside one that was not heard of would get another number.
    void afterAnUnansweredQuestionNothingIsWritten()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        const auto application = m_fixture->link.application();
        const auto tab = currentTab(*application);
        QVERIFY(!application->doJavaScript(box, tab));
        const auto question = peer->receive(0);
        QVERIFY(peer->sendRan(idOf(question), QJsonArray{QString()}));
        QVERIFY(!application->doJavaScript(box + QStringLiteral("=1"), tab));
        QCoreApplication::processEvents(); // the reading ends, and the answer arrives
        waitForStatus("Page not answering");
        QVERIFY(!peer->receive(0));
        run(box + QStringLiteral("=2"));
        QCoreApplication::processEvents();
        QCOMPARE(textsOf(peer->receive()), QStringList{box + QStringLiteral("=2")});
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
        connect(&m_fixture->link, &BrowserLink::statusTextChanged, &m_fixture->link,
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

    void theWrongNumberOfResultsEndsTheConnection()
    {
        const auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        peer->answerWith([](const QJsonArray &) { return QJsonArray{QString(), QString()}; });
        QVERIFY(!run(box));
        waitForStatus("No browser linked");
    }
};

QTEST_GUILESS_MAIN(BrowserLinkTest)
#include "BrowserLinkTest.moc"
