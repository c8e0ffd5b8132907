// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/browser/link/BrowserFixture.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TestClasses.h"

#include <QElapsedTimer>
#include <QSignalSpy>

namespace {

const QString secondBox = QStringLiteral("document.getElementsByName('weight2')[0].value");
const QByteArray upsPage = R"({"current":{"page":2,"host":"www.ups.com"}})";

QJsonObject planOf(const std::optional<QJsonObject> &message)
{
    return message ? message->value(QLatin1String("plan")).toObject() : QJsonObject();
}

QJsonArray stepsOf(const std::optional<QJsonObject> &message)
{
    return planOf(message)[QLatin1String("steps")].toArray();
}

int idOf(const std::optional<QJsonObject> &message)
{
    return planOf(message)[QLatin1String("id")].toInt(-1);
}

int pageOf(const std::optional<QJsonObject> &message)
{
    return planOf(message)[QLatin1String("page")].toInt(-1);
}

QString weighing(int number)
{
    return weightBox + QLatin1Char('=') + QString::number(number);
}

} // namespace

/// What the program has the link do, over a real socket.
class BrowserLinkTest : public QObject
{
    Q_OBJECT

private:
    std::optional<BrowserFixture> m_fixture;

    std::unique_ptr<BrowserPeer> attachedPeer(const QList<QByteArray> &messages = {uspsPage})
    {
        return m_fixture->attachedPeer(messages);
    }

    /// In front, with the USPS page open.
    std::unique_ptr<BrowserPeer> uspsPeer()
    {
        auto peer = attachedPeer();
        waitForStatus("Browser linked, USPS page open");
        return peer;
    }

    BrowserLink &link() { return m_fixture->link; }
    bool fill(const QString &text, int times = 1) { return m_fixture->fill(text, times); }
    void waitForStatus(const char *text) { m_fixture->waitForStatus(text); }
    /// A part of the reading under way.
    void postFor(const char *carrier, const QString &text)
    {
        m_fixture->post({.steps = {{text}}, .carrier = QString::fromLatin1(carrier)});
    }

private slots:
    void init()
    {
        m_fixture.emplace();
        QVERIFY(m_fixture->listening);
    }

    void cleanup() { m_fixture.reset(); }

    void withoutABrowser()
    {
        QCOMPARE(link().statusText(), QStringLiteral("No browser linked"));
        QVERIFY(link().application()->windows().empty());
        QVERIFY(!fill(assignment));
    }

    void theProgramIntroducesItselfFirst()
    {
        BrowserPeer peer(m_fixture->path());
        QCoreApplication::processEvents();
        const auto message = peer.receive();
        QVERIFY(message);
        QCOMPARE(message->value(QLatin1String("hello"))[QLatin1String("protocol")].toInt(), 2);
        QCOMPARE(link().statusText(), QStringLiteral("No browser linked"));
        peer.send(hello);
        waitForStatus("Browser linked, waiting for a carrier page");
        QCOMPARE(link().application()->windows().size(), std::size_t(1));
        QVERIFY(!currentTab(*link().application()));
        QVERIFY(!fill(assignment));
        peer.hangUp();
        waitForStatus("No browser linked");
    }

    void anotherProtocolIsSaidAndNotUsed()
    {
        BrowserPeer peer(m_fixture->path());
        peer.send(R"({"hello":{"protocol":1,"version":"7.0","browser":"test"}})");
        waitForStatus("Browser extension 7.0 does not fit this program");
        peer.send(uspsPage);
        QVERIFY(link().application()->windows().empty());
    }

    /// The status area tells of the one that is linked.
    void anotherProtocolBesideALinkedBrowserIsLogged()
    {
        const LogCapture log;
        const auto peer = uspsPeer();
        BrowserPeer stranger(m_fixture->path());
        stranger.send(R"({"hello":{"protocol":1,"version":"7.0","browser":"Firefox"}})");
        const QStringList expected{
            QStringLiteral("Browser link: the extension 7.0 in Firefox does not fit this program")};
        QTRY_COMPARE(LogCapture::lines(), expected);
        QCOMPARE(link().statusText(), QStringLiteral("Browser linked, USPS page open"));
    }

    /// Of several carriers' options, as one after the other is served.
    void aReadingIsOneMessage()
    {
        const auto peer = uspsPeer();
        const auto question = [](const QString &text) {
            return FillStep{.text = text, .isQuestion = true};
        };
        const FillPlan first{{question(weightBox), question(secondBox), {assignment, {0}, {1}}}};
        const FillPlan second{{question(secondBox), {weighing(2), {0}}}};
        QVERIFY(m_fixture->post(first));
        QVERIFY(m_fixture->post(second));
        QVERIFY(!peer->receive(0));
        QCoreApplication::processEvents();
        const auto step = [](const QString &text, const QJsonArray &yes, const QJsonArray &no) {
            return QJsonObject{{QStringLiteral("text"), text},
                               {QStringLiteral("if"), yes},
                               {QStringLiteral("unless"), no}};
        };
        const auto message = peer->receive();
        QCOMPARE(pageOf(message), 1);
        QCOMPARE(stepsOf(message), (QJsonArray{weightBox, secondBox, step(assignment, {0}, {1}),
                                               secondBox, step(weighing(2), {2}, {})}));
        QVERIFY(!peer->receive(0));
    }

    void theThreadIsNotHeld()
    {
        const auto peer = uspsPeer();
        QElapsedTimer time;
        time.start();
        for (int reading = 0; reading < 20; ++reading)
            QVERIFY(fill(weightBox));
        // Twenty waits for an answer that does not come would be far longer.
        QVERIFY(time.elapsed() < 10 * BrowserClient::answerTime.count());
    }

    void aPageThatDoesNotAnswerGetsTheLatestReadingWhenItDoes()
    {
        const auto peer = uspsPeer();
        fill(weighing(1));
        const auto first = peer->receive();
        for (int reading = 2; reading < 50; ++reading)
            QVERIFY(fill(weighing(reading)));
        waitForStatus("Page not answering");
        QVERIFY(!peer->receive(0));

        // It is not known to keep up before it has taken in the latest.
        QSignalSpy shown(&link(), &BrowserLink::statusTextChanged);
        peer->sendRan(idOf(first), 1);
        QCoreApplication::processEvents();
        const auto latest = peer->receive();
        QCOMPARE(stepsOf(latest), QJsonArray{weighing(49)});
        peer->sendRan(idOf(latest), 1);
        waitForStatus("Filling USPS: 1 field");
        QCOMPARE(shown.size(), 1);
        QVERIFY(!peer->receive(0));
    }

    /// Of a settled weight there is one reading, and no second one that would try again.
    void aSingleReadingReachesAPageThatWasBusy()
    {
        const auto peer = uspsPeer();
        fill(weighing(1));
        const auto first = peer->receive();
        waitForStatus("Page not answering");
        fill(weighing(2));
        QSignalSpy written(&link(), &BrowserLink::pageWritten);
        peer->sendRan(idOf(first), 1);
        QTRY_VERIFY(peer->isConnected());
        QCoreApplication::processEvents();
        const auto second = peer->receive();
        QCOMPARE(stepsOf(second), QJsonArray{weighing(2)});
        // The late answer is not that of the weight that is meant by now.
        QCOMPARE(written.size(), 0);
        peer->sendRan(idOf(second), 1);
        QTRY_COMPARE(written.size(), 1);
    }

    void aLateAnswerOfTheSameTextsCounts()
    {
        const auto peer = uspsPeer();
        fill(assignment);
        const auto first = peer->receive();
        fill(assignment);
        QSignalSpy written(&link(), &BrowserLink::pageWritten);
        peer->sendRan(idOf(first), 1);
        QTRY_COMPARE(written.size(), 1);
    }

    void aPageThatTookNothingIsNotWritten()
    {
        const auto peer = uspsPeer();
        QSignalSpy written(&link(), &BrowserLink::pageWritten);
        fill(assignment);
        peer->sendRan(idOf(peer->receive()), 0);
        fill(assignment);
        const auto second = peer->receive();
        QVERIFY(second);
        QCOMPARE(written.size(), 0);
        QCOMPARE(link().statusText(), QStringLiteral("Browser linked, USPS page open"));
    }

    void aPageThatNobodyFillsAnyMoreIsMerelyOpen()
    {
        const auto peer = uspsPeer();
        fill(assignment);
        waitForStatus("Page not answering");
        peer->sendRan(idOf(peer->receive()), 1);
        waitForStatus("Filling USPS: 1 field");
        waitForStatus("Browser linked, USPS page open");
    }

    void aPageThatIsGoneGetsNothingMore()
    {
        const auto peer = uspsPeer();
        fill(weighing(1));
        const auto first = peer->receive();
        fill(weighing(2));
        waitForStatus("Page not answering");
        peer->sendRan(idOf(first), QJsonValue());
        waitForStatus("Browser linked, USPS page open");
        QVERIFY(!peer->receive(0));
        fill(weighing(3));
        QCOMPARE(stepsOf(peer->receive()), QJsonArray{weighing(3)});
    }

    void anotherPageOfTheSameBrowserIsServed()
    {
        const auto peer = uspsPeer();
        fill(assignment);
        const auto first = peer->receive();
        waitForStatus("Page not answering");
        peer->send(upsPage);
        waitForStatus("Browser linked, UPS page open");
        fill(assignment);
        const auto message = peer->receive();
        QCOMPARE(pageOf(message), 2);
        peer->sendRan(idOf(message), 1);
        waitForStatus("Filling UPS: 1 field");
        peer->send(uspsPage);
        waitForStatus("Page not answering");
        peer->sendRan(idOf(first), 1);
        waitForStatus("Filling USPS: 1 field");
    }

    void theCountIsThatOfThePage()
    {
        const auto peer = uspsPeer();
        QStringList shown;
        connect(&link(), &BrowserLink::statusTextChanged, &link(),
                [&](const QString &text) { shown.append(text); });
        fill(assignment);
        peer->sendRan(idOf(peer->receive()), 1);
        waitForStatus("Filling USPS: 1 field");
        peer->send(upsPage);
        waitForStatus("Browser linked, UPS page open");
        const auto other = attachedPeer(
            {R"({"current":{"page":1,"host":"www.fedex.com"}})", R"({"focused":2000})"});
        waitForStatus("Browser linked, FedEx page open");
        for (const QString &text : std::as_const(shown))
            QVERIFY(text == shown.front() || !text.startsWith(QLatin1String("Filling")));
    }

    void theIndicatorDoesNotFlicker()
    {
        const auto peer = uspsPeer();
        QStringList shown;
        connect(&link(), &BrowserLink::statusTextChanged, &link(),
                [&](const QString &text) { shown.append(text); });
        for (int reading = 0; reading < 3; ++reading) {
            fill(assignment, 3);
            peer->sendRan(idOf(peer->receive()), 3);
            waitForStatus("Filling USPS: 3 fields");
        }
        waitForStatus("Browser linked, USPS page open");
        QCOMPARE(shown, (QStringList{QStringLiteral("Filling USPS: 3 fields"),
                                     QStringLiteral("Browser linked, USPS page open")}));
    }

    /// Until the next reading, which may be long in coming.
    void anotherNumberIsSaidForAsLongAsItStands()
    {
        const auto peer = uspsPeer();
        fill(assignment, 6);
        peer->sendRan(idOf(peer->receive()), 6, 1);
        waitForStatus("USPS: 1 field shows another number");
        QTest::qWait(1500); // longer than "Filling" is shown
        QCOMPARE(link().statusText(), QStringLiteral("USPS: 1 field shows another number"));
        fill(assignment, 6);
        peer->sendRan(idOf(peer->receive()), 6, 2);
        waitForStatus("USPS: 2 fields show another number");
        fill(assignment, 6);
        peer->sendRan(idOf(peer->receive()), 6);
        waitForStatus("Filling USPS: 6 fields");
    }

    void anotherNumberIsNotSaidOfACarrierThatIsOff()
    {
        const auto peer = uspsPeer();
        fill(assignment, 6);
        peer->sendRan(idOf(peer->receive()), 6, 1);
        waitForStatus("USPS: 1 field shows another number");
        link().stopFilling(QStringLiteral("USPS"));
        waitForStatus("Browser linked, USPS page open");
    }

    /// Even if the page was on its way to say so.
    void anotherNumberOfACarrierThatIsOffIsNotSaidForLong()
    {
        const auto peer = uspsPeer();
        fill(assignment);
        link().stopFilling(QStringLiteral("USPS"));
        peer->sendRan(idOf(peer->receive()), 1, 1);
        waitForStatus("USPS: 1 field shows another number");
        waitForStatus("Browser linked, USPS page open");
    }

    /// Where it has taken a part, a person who looks at the rest has taken it there.
    void aPageOfOtherNumbersHasNotTakenTheParcel()
    {
        const auto peer = uspsPeer();
        QSignalSpy written(&link(), &BrowserLink::pageWritten);
        fill(assignment, 2);
        peer->sendRan(idOf(peer->receive()), 2, 2);
        waitForStatus("USPS: 2 fields show another number");
        QCOMPARE(written.size(), 0);
        fill(assignment, 2);
        peer->sendRan(idOf(peer->receive()), 2, 1);
        waitForStatus("USPS: 1 field shows another number");
        QCOMPARE(written.size(), 1);
    }

    void whatWaitsForABusyPageCanBeForgotten()
    {
        const auto peer = uspsPeer();
        fill(weighing(1));
        const auto first = peer->receive();
        fill(weighing(2));
        waitForStatus("Page not answering");
        link().forgetWaiting();
        peer->sendRan(idOf(first), 1);
        waitForStatus("Filling USPS: 1 field");
        QVERIFY(!peer->receive(0));
        fill(weighing(3));
        QCOMPARE(stepsOf(peer->receive()), QJsonArray{weighing(3)});
    }

    /// What waits for the others is sent, and counts as this reading's.
    void whatWaitsOfACarrierThatIsOffIsForgotten()
    {
        const auto peer = uspsPeer();
        QSignalSpy written(&link(), &BrowserLink::pageWritten);
        fill(weighing(1));
        const auto first = peer->receive();
        postFor("USPS", weighing(2));
        postFor("UPS", weighing(3));
        postFor("USPS", weighing(4));
        QCoreApplication::processEvents();
        link().stopFilling(QStringLiteral("UPS"));
        peer->sendRan(idOf(first), 1);
        QCoreApplication::processEvents();
        const auto rest = peer->receive();
        QCOMPARE(stepsOf(rest), (QJsonArray{weighing(2), weighing(4)}));
        QCOMPARE(written.size(), 0);
        peer->sendRan(idOf(rest), 2);
        QTRY_COMPARE(written.size(), 1);
        // Nothing is left where each of them is off, not even a plan of nothing.
        fill(weighing(5));
        const auto next = peer->receive();
        postFor("USPS", weighing(6));
        QCoreApplication::processEvents();
        link().stopFilling(QStringLiteral("USPS"));
        peer->sendRan(idOf(next), 1);
        QCoreApplication::processEvents();
        QVERIFY(!peer->receive(0));
    }

    /// Of one reading, before it is sent.
    void aCarrierThatGoesOffAtThatMoment()
    {
        const auto peer = uspsPeer();
        postFor("UPS", weighing(1));
        postFor("USPS", weighing(2));
        link().stopFilling(QStringLiteral("UPS"));
        QCoreApplication::processEvents();
        QCOMPARE(stepsOf(peer->receive()), QJsonArray{weighing(2)});
    }

    /// The page of one that is still served is looked after.
    void anotherNumberStandsOnThoughAnotherCarrierIsOff()
    {
        const auto peer = uspsPeer();
        postFor("USPS", weighing(1));
        postFor("UPS", weighing(2));
        QCoreApplication::processEvents();
        peer->sendRan(idOf(peer->receive()), 2, 1);
        waitForStatus("USPS: 1 field shows another number");
        link().stopFilling(QStringLiteral("UPS"));
        QTest::qWait(1500); // longer than "Filling" is shown
        QCOMPARE(link().statusText(), QStringLiteral("USPS: 1 field shows another number"));
        link().stopFilling(QStringLiteral("USPS"));
        waitForStatus("Browser linked, USPS page open");
    }

    void aPageWithoutANameIsServed()
    {
        const auto peer = attachedPeer({R"({"current":{"page":1,"host":"a~b.example.com"}})"});
        waitForStatus("Browser linked, a page open");
        fill(assignment);
        peer->sendRan(idOf(peer->receive()), 1);
        waitForStatus("Filling the page: 1 field");
    }

    void theBrowserWithTheLatestFocusIsInFront()
    {
        const auto one = attachedPeer({R"({"focused":60000})", uspsPage});
        waitForStatus("Browser linked, USPS page open");
        const auto other = attachedPeer({upsPage, R"({"focused":30000})"});
        waitForStatus("Browser linked, UPS page open");
        one->send(R"({"focused":0})");
        waitForStatus("Browser linked, USPS page open");
        other->send(R"({"focused":0})");
        waitForStatus("Browser linked, UPS page open");
        other->hangUp();
        waitForStatus("Browser linked, USPS page open");
    }

    /// Whatever it says of its focus, the next one that is focused comes before it.
    void noFocusLiesInTheFuture()
    {
        const auto one = attachedPeer({R"({"focused":9007199254740991})", uspsPage});
        waitForStatus("Browser linked, USPS page open");
        const auto other = attachedPeer({upsPage, R"({"focused":0})"});
        waitForStatus("Browser linked, UPS page open");
        one->send(R"({"focused":9007199254740991})");
        one->send(R"({"current":{"page":1,"host":"www.fedex.com"}})");
        QTest::qWait(50);
        QCOMPARE(link().statusText(), QStringLiteral("Browser linked, UPS page open"));
        one->send(R"({"focused":0})");
        waitForStatus("Browser linked, FedEx page open");
        other->send(R"({"focused":0})");
        waitForStatus("Browser linked, UPS page open");
    }

    void aBrowserThatGoesHoldsNothingUp()
    {
        const auto peer = uspsPeer();
        fill(weighing(1));
        fill(weighing(2));
        peer->hangUp();
        fill(weighing(3));
        waitForStatus("No browser linked");
        QVERIFY(!fill(weighing(4)));
    }

    /// In the plan's order, once the page has said so; never for a plan that no page has done.
    void theNotesOfTheStepsThatWereDueAreLogged()
    {
        const LogCapture log;
        const auto peer = uspsPeer();
        const auto noted = [](const char *note) { return FillStep{weighing(1), {}, {}, {}, note}; };
        m_fixture->post({{noted("one"), {weighing(1)}, noted("two")}});
        m_fixture->post({{noted("three"), noted("four")}});
        QCoreApplication::processEvents();
        const auto first = peer->receive();
        fill(weighing(2));
        QCOMPARE(LogCapture::lines(), QStringList());
        peer->sendRan(idOf(first), 1, 0, {0, 1, 3});
        const QStringList expected{QStringLiteral("one"), QStringLiteral("two"),
                                   QStringLiteral("four")};
        QTRY_COMPARE(LogCapture::lines(), expected);
        peer->sendRan(idOf(peer->receive()), QJsonValue(), {0});
        waitForStatus("Browser linked, USPS page open");
        QCOMPARE(LogCapture::lines(), expected);
    }

    void aNoteThatThePlanLacksEndsTheConnection()
    {
        const auto peer = uspsPeer();
        m_fixture->post({{FillStep{weighing(1), {}, {}, {}, "one"}}});
        QCoreApplication::processEvents();
        peer->sendRan(idOf(peer->receive()), 1, 0, {1});
        waitForStatus("No browser linked");
    }

    void moreFieldsThanStepsEndTheConnection()
    {
        const auto peer = uspsPeer();
        fill(assignment);
        peer->sendRan(idOf(peer->receive()), 2);
        waitForStatus("No browser linked");
    }
};

TEST_CLASS_INSIDE(QCoreApplication, BrowserLinkTest)
#include "BrowserLinkTest.moc"
