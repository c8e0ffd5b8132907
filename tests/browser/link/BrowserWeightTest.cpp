// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserWeight.h"
#include "tests/browser/link/BrowserFixture.h"
#include "tests/support/TestClasses.h"

using namespace std::chrono_literals;

namespace {

const QByteArray wishOnce = R"({"weight":"once"})";
const QByteArray wishFollow = R"({"weight":"follow"})";
const QByteArray wishStop = R"({"weight":"stop"})";

/// 1000 g.
BrowserWeight kilogram()
{
    return {.state = WeightState::Settled,
            .texts = UnitTexts{.pounds = QStringLiteral("2.205"),
                               .ounces = QStringLiteral("35.27"),
                               .kilograms = QStringLiteral("1"),
                               .grams = QStringLiteral("1000"),
                               .wholePounds = QStringLiteral("2"),
                               .restOunces = QStringLiteral("4"),
                               .exact = {.pounds = QStringLiteral("2.204623"),
                                         .ounces = QStringLiteral("35.273962"),
                                         .kilograms = QStringLiteral("1"),
                                         .grams = QStringLiteral("1000")}},
            .unit = QStringLiteral("lb"),
            .age = 120ms,
            .parcel = 3};
}

QJsonObject weightIn(const std::optional<QJsonObject> &message)
{
    return message ? message->value(QLatin1String("weight")).toObject() : QJsonObject();
}

} // namespace

/// The weight for fields that no plan knows.
class BrowserWeightTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_fixture.emplace();
        QVERIFY(m_fixture->listening);
    }

    void cleanup() { m_fixture.reset(); }

    void wishes()
    {
        const auto wishIn = [](const QByteArray &json) {
            const auto message = parseBrowserMessage(json);
            return message ? std::get<WeightWish>(*message) : WeightWish::Stop;
        };
        QCOMPARE(wishIn(wishOnce), WeightWish::Once);
        QCOMPARE(wishIn(wishFollow), WeightWish::Follow);
        QVERIFY(parseBrowserMessage(wishStop));
        for (const char *refused :
             {R"({"weight":"twice"})", R"({"weight":""})", R"({"weight":null})", R"({"weight":1})",
              R"({"weight":{"once":true}})", R"({"weight":"once","page":3})",
              R"({"weight":["once"]})"})
            QVERIFY2(!parseBrowserMessage(refused), refused);
    }

    void theMessage()
    {
        const QJsonObject object =
            QJsonDocument::fromJson(browserWeightMessage(kilogram())).object();
        QCOMPARE(object.keys(), QStringList(QStringLiteral("weight")));
        const QByteArray expected =
            R"({"age":120,"news":false,"parcel":3,"state":"settled","texts":{"exact":{"g":"1000",)"
            R"("kg":"1","lb":"2.204623","oz":"35.273962"},"g":"1000","kg":"1","lb":"2.205",)"
            R"("lb oz":"2 4","oz":"35.27"},"unit":"lb"})";
        QCOMPARE(QJsonDocument(weightIn(object)).toJson(QJsonDocument::Compact), expected);
        QVERIFY(!parseBrowserMessage(browserWeightMessage(kilogram())));
    }

    void whatHasNoWeightHasNoTexts()
    {
        const auto weight = weightIn(QJsonDocument::fromJson(browserWeightMessage({})).object());
        QCOMPARE(weight.value(QLatin1String("state")).toString(), QStringLiteral("no scale"));
        QVERIFY(weight.value(QLatin1String("texts")).isNull());
    }

    void whoAsksIsAnsweredOnce()
    {
        link().setWeightSource(&kilogram);
        const auto peer = m_fixture->attachedPeer({wishOnce});
        const auto other = m_fixture->attachedPeer({});
        QCOMPARE(weightIn(receive(*peer)).value(QLatin1String("state")).toString(),
                 QStringLiteral("settled"));
        link().tellWeight(kilogram());
        QVERIFY(!link().isWeightFollowed());
        QVERIFY(saysNothing(*peer));
        QVERIFY(saysNothing(*other));
    }

    void withoutASourceThereIsNoScale()
    {
        const auto peer = m_fixture->attachedPeer({wishOnce});
        QCOMPARE(weightIn(receive(*peer)).value(QLatin1String("state")).toString(),
                 QStringLiteral("no scale"));
    }

    void aFollowerIsToldUntilItStops()
    {
        const auto peer = m_fixture->attachedPeer({wishFollow});
        QTRY_VERIFY(link().isWeightFollowed());
        BrowserWeight news = kilogram();
        news.isNews = true;
        link().tellWeight(news);
        link().tellWeight(news);
        QVERIFY(weightIn(receive(*peer)).value(QLatin1String("news")).toBool());
        QVERIFY(weightIn(receive(*peer)).value(QLatin1String("news")).toBool());
        peer->send(wishStop);
        QTRY_VERIFY(!link().isWeightFollowed());
        link().tellWeight(news);
        QVERIFY(saysNothing(*peer));
    }

    void onlyTheBrowserInFrontIsTold()
    {
        const auto front = m_fixture->attachedPeer({wishFollow, R"({"focused":10})", wishOnce});
        const auto behind = m_fixture->attachedPeer({wishFollow, R"({"focused":9000})", wishOnce});
        // Who is answered has been heard to the end.
        QVERIFY(receive(*front));
        QVERIFY(receive(*behind));
        link().tellWeight(kilogram());
        QVERIFY(receive(*front));
        QVERIFY(saysNothing(*behind));
    }

    void aStrangerMayNotAsk()
    {
        BrowserPeer early(m_fixture->path());
        QCoreApplication::processEvents();
        early.receive();
        early.send(wishOnce);
        QTRY_VERIFY(early.isClosedWithin(1));
        BrowserPeer unfit(m_fixture->path());
        QCoreApplication::processEvents();
        unfit.receive();
        unfit.send(R"({"hello":{"protocol":1,"version":"0.1.0","browser":"test"}})");
        unfit.send(wishFollow);
        QTRY_VERIFY(unfit.isClosedWithin(1));
        QVERIFY(!link().isWeightFollowed());
    }

private:
    BrowserLink &link() { return m_fixture->link; }

    /// The next message, for which the link may have to run first.
    static std::optional<QJsonObject> receive(BrowserPeer &peer)
    {
        const QDeadlineTimer patience(BrowserPeer::patience);
        while (!patience.hasExpired()) {
            QCoreApplication::processEvents();
            if (const auto message = peer.receive(1))
                return message;
        }
        return std::nullopt;
    }

    static bool saysNothing(BrowserPeer &peer)
    {
        QTest::qWait(lateness);
        return !peer.receive(1);
    }

    std::optional<BrowserFixture> m_fixture;
};

TEST_CLASS_INSIDE(QCoreApplication, BrowserWeightTest)
#include "BrowserWeightTest.moc"
