// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserMessage.h"
#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserSituation.h"
#include "tests/support/TestClasses.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <random>

namespace {

QByteArray bytes(std::initializer_list<int> values)
{
    QByteArray result;
    for (const int value : values)
        result.append(static_cast<char>(value));
    return result;
}

} // namespace

/// What goes over the socket, on its own.
class BrowserMessageTest : public QObject
{
    Q_OBJECT

private slots:
    void aFrameIsItsLengthAndTheMessage()
    {
        QCOMPARE(browserFrame("ab"), bytes({0x02, 0x00, 0x00, 0x00, 'a', 'b'}));
    }

    void framesArriveInAnyPieces()
    {
        const QByteArray stream = browserFrame("{}") + browserFrame("[1]") + browserFrame("x");
        for (qsizetype piece = 1; piece <= stream.size(); ++piece) {
            BrowserFrameReader reader;
            QList<QByteArray> messages;
            for (qsizetype start = 0; start < stream.size(); start += piece) {
                reader.append(stream.mid(start, piece));
                while (const auto message = reader.next())
                    messages.append(*message);
            }
            QCOMPARE(messages, (QList<QByteArray>{"{}", "[1]", "x"}));
            QVERIFY(!reader.isBroken());
        }
    }

    void lengths_data()
    {
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<bool>("broken");
        QTest::newRow("none") << bytes({0x00, 0x00, 0x00, 0x00}) << true;
        QTest::newRow("incomplete") << bytes({0x00, 0x00, 0x00}) << false;
        QTest::newRow("greatest") << bytes({0x00, 0x00, 0x01, 0x00}) << false;
        QTest::newRow("one more") << bytes({0x01, 0x00, 0x01, 0x00}) << true;
        QTest::newRow("gigabytes") << bytes({0xFF, 0xFF, 0xFF, 0xFF}) << true;
    }

    void lengths()
    {
        QFETCH(QByteArray, stream);
        QFETCH(bool, broken);
        BrowserFrameReader reader;
        reader.append(stream);
        QVERIFY(!reader.next());
        QCOMPARE(reader.isBroken(), broken);
        reader.append(browserFrame("{}"));
        QVERIFY(!broken || !reader.next());
    }

    void noBytesDoHarm()
    {
        std::mt19937 random(20261121);
        const QByteArray sound =
            browserFrame(R"({"ran":{"id":3,"fields":{"written":6,"changed":1},"notes":[0,2]}})") +
            browserFrame(R"({"current":{"page":4,"host":"www.usps.com"}})");
        for (int attempt = 0; attempt < 20000; ++attempt) {
            QByteArray stream = sound;
            for (int change = 0; change < 3; ++change)
                stream[static_cast<qsizetype>(random() % static_cast<unsigned>(stream.size()))] =
                    static_cast<char>(random());
            BrowserFrameReader reader;
            reader.append(stream);
            int messages = 0;
            while (const auto message = reader.next()) {
                QVERIFY(message->size() <= longestBrowserMessage);
                parseBrowserMessage(*message);
                ++messages;
            }
            QVERIFY(messages <= stream.size() / 5);
        }
    }

    void refusedMessages_data()
    {
        QTest::addColumn<QByteArray>("json");
        const char *const refused[] = {
            "",
            "nonsense",
            "[]",
            "{}",
            R"({"plan":{"id":1,"page":1,"steps":[]}})",
            R"({"hello":{"protocol":"1","version":"2.0","browser":"Firefox"}})",
            R"({"hello":{"protocol":-1,"version":"2.0","browser":"Firefox"}})",
            R"({"hello":{"protocol":1.5,"version":"2.0","browser":"Firefox"}})",
            R"({"hello":{"protocol":1},"current":null})",
            R"({"current":{"page":1}})",
            R"({"current":{"page":-1,"host":"www.usps.com"}})",
            R"({"current":{"page":4294967296,"host":"www.usps.com"}})",
            R"({"current":{"page":1.5,"host":"www.usps.com"}})",
            R"({"current":{"page":4294967295.5,"host":"www.usps.com"}})",
            R"({"current":7})",
            R"({"current":{"page":1,"host":"<b>www.usps.com</b>"}})",
            R"({"current":{"page":1,"host":"www.usps.com\n"}})",
            R"({"current":{"page":1,"host":"www usps com"}})",
            R"({"current":{"page":1,"host":""}})",
            R"({"current":{"page":1,"host":"a/b~c"}})",
            R"({"current":{"page":1,"host":"a~b\n"}})",
            R"({"hello":{"protocol":2,"version":"2<img src='/'>","browser":"Firefox"}})",
            R"({"hello":{"protocol":2,"version":"","browser":"Firefox"}})",
            R"({"hello":{"protocol":2,"version":"2.0","browser":"Fire\nfox"}})",
            R"({"hello":{"protocol":2,"version":"2.0"}})",
            R"({"focused":"now"})",
            R"({"focused":1e300})",
            R"({"focused":0.5})",
            R"({"ran":null})",
            R"({"ran":{"fields":{"written":1,"changed":0},"notes":[]}})",
            R"({"ran":{"id":1.5,"fields":{"written":1,"changed":0},"notes":[]}})",
            R"({"ran":{"id":1,"fields":"1","notes":[]}})",
            R"({"ran":{"id":1,"fields":[1,0],"notes":[]}})",
            R"({"ran":{"id":1,"fields":{"written":1},"notes":[]}})",
            R"({"ran":{"id":1,"fields":{"changed":0},"notes":[]}})",
            R"({"ran":{"id":1,"fields":{"written":-1,"changed":-1},"notes":[]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":2},"notes":[]}})",
            R"({"ran":{"id":1,"fields":{"written":1.5,"changed":1},"notes":[]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0}}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":null}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":0}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":"Pound is selected"}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":["0"]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":[-1]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":[0.5]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":[2147483648]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":[0,0]}})",
            R"({"ran":{"id":1,"fields":{"written":1,"changed":0},"notes":[1,0]}})",
        };
        for (const char *json : refused)
            QTest::newRow(json) << QByteArray(json);
    }

    void refusedMessages()
    {
        QFETCH(QByteArray, json);
        QVERIFY(!parseBrowserMessage(json));
    }

    void understoodMessages()
    {
        const auto hello =
            parseBrowserMessage(R"({"hello":{"protocol":1,"version":"2.0","browser":"Firefox"}})");
        QVERIFY(hello);
        QCOMPARE(std::get<BrowserHello>(*hello).protocol, 1);
        QCOMPARE(std::get<BrowserHello>(*hello).version, QStringLiteral("2.0"));
        QCOMPARE(std::get<BrowserHello>(*hello).browser, QStringLiteral("Firefox"));

        const auto current = parseBrowserMessage(R"({"current":{"page":4,"host":"a.ups.com"}})");
        QVERIFY(current);
        QCOMPARE(std::get<BrowserCurrent>(*current).page,
                 (BrowserPage{.id = 4, .host = QStringLiteral("a.ups.com")}));
        const auto none = parseBrowserMessage(R"({"current":null})");
        QVERIFY(none);
        QVERIFY(!std::get<BrowserCurrent>(*none).page);

        const auto focused = parseBrowserMessage(R"({"focused":1795})");
        QVERIFY(focused);
        QCOMPARE(std::get<BrowserFocus>(*focused).ago.count(), 1795);

        const auto ran = parseBrowserMessage(
            R"({"ran":{"id":3,"fields":{"written":6,"changed":1},"notes":[0,2]}})");
        QVERIFY(ran);
        QCOMPARE(std::get<BrowserRan>(*ran).id, 3U);
        QCOMPARE(std::get<BrowserRan>(*ran).fields, (FilledFields{.written = 6, .changed = 1}));
        QCOMPARE(std::get<BrowserRan>(*ran).notes, (QList<int>{0, 2}));
        const auto gone = parseBrowserMessage(R"({"ran":{"id":3,"fields":null}})");
        QVERIFY(gone);
        QVERIFY(!std::get<BrowserRan>(*gone).fields);
    }

    /// Hosts that an address can have, but that are not shown as they stand.
    void hostsWithoutAName_data()
    {
        QTest::addColumn<QByteArray>("host");
        for (const char *host : {"a~b.example.com", "~", "a_b+c.ups.com", "it's.example.com"})
            QTest::newRow(host) << QByteArray(host);
        QTest::newRow("too long") << QByteArray(254, 'a');
    }

    void hostsWithoutAName()
    {
        QFETCH(QByteArray, host);
        const auto current =
            parseBrowserMessage(R"({"current":{"page":4,"host":")" + host + R"("}})");
        QVERIFY(current);
        const auto &page = std::get<BrowserCurrent>(*current).page;
        QVERIFY(page);
        QCOMPARE(page->id, 4U);
        QCOMPARE(page->host, QString());
    }

    void limits_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<bool>("understood");
        const auto row = [](const char *name, const QByteArray &json, bool understood) {
            QTest::newRow(name) << json << understood;
        };
        const auto hello = [](const QByteArray &protocol, const QByteArray &version) {
            return QByteArray("{'hello':{'protocol':P,'version':'V','browser':'Firefox'}}")
                .replace('P', protocol)
                .replace('V', version)
                .replace('\'', '"');
        };
        const auto current = [](const QByteArray &page) {
            return QByteArray("{'current':{'page':P,'host':'www.usps.com'}}")
                .replace('P', page)
                .replace('\'', '"');
        };
        const auto focused = [](const QByteArray &time) {
            return QByteArray("{'focused':P}").replace('P', time).replace('\'', '"');
        };
        row("protocol 0", hello("0", "1"), true);
        row("greatest protocol", hello("2147483647", "1"), true);
        row("protocol too great", hello("2147483648", "1"), false);
        row("page 0", current("0"), true);
        row("greatest page", current("4294967295"), true);
        row("focused at 0", focused("0"), true);
        row("focused before", focused("-1"), false);
        row("latest focus", focused("9007199254740991"), true);
        row("later than numbers are exact", focused("9007199254740992"), false);
        row("longest word", hello("1", QByteArray(253, 'a')), true);
        row("word too long", hello("1", QByteArray(254, 'a')), false);
        row("one letter", hello("1", "a"), true);
    }

    void limits()
    {
        QFETCH(QByteArray, json);
        QTEST(parseBrowserMessage(json).has_value(), "understood");
    }

    void sentMessages()
    {
        QCOMPARE(browserHelloMessage(QStringLiteral("0.1.0")),
                 QByteArray("{'hello':{'protocol':2,'version':'0.1.0'}}").replace('\'', '"'));
        const FillPlan plan{{{QStringLiteral("a")},
                             {QStringLiteral("b"), {0, 2}, {1}},
                             {QStringLiteral("c"), {}, {3}},
                             {QStringLiteral("e"), {}, {}, "d"},
                             {QStringLiteral("f"), {4}, {}, {}, "for the log alone"}}};
        QCOMPARE(browserPlanMessage(4000000000U, 7, plan),
                 QByteArray("{'plan':{'id':4000000000,'page':7,'steps':['a',"
                            "{'if':[0,2],'text':'b','unless':[1]},"
                            "{'if':[],'text':'c','unless':[3]},'de',"
                            "{'if':[4],'note':true,'text':'f','unless':[]}]}}")
                     .replace('\'', '"'));
    }

    void textsOfAnyKindArriveAsTheyAre()
    {
        const QString text =
            QStringLiteral("'\"\\\n\t\u0001\u007f\u00e9\u20ac\U0001f4e6") + QChar(0);
        const QByteArray message = browserPlanMessage(1, 1, {{{text}}});
        QCOMPARE(QJsonDocument::fromJson(message)[QLatin1String("plan")][QLatin1String("steps")][0],
                 QJsonValue(text));
        QCOMPARE(browserPlanMessage(1, 2, {}),
                 QByteArray(R"({"plan":{"id":1,"page":2,"steps":[]}})"));
    }

    void situations_data()
    {
        using Kind = BrowserSituation::Kind;
        QTest::addColumn<BrowserSituation>("situation");
        QTest::addColumn<QString>("text");
        const auto row = [](BrowserSituation situation, const char *text) {
            QTest::newRow(text) << situation << QString::fromLatin1(text);
        };
        row({.kind = Kind::NoBrowser}, "No browser linked");
        row({.kind = Kind::WrongVersion, .name = QStringLiteral("9.1")},
            "Browser extension 9.1 does not fit this program");
        row({.kind = Kind::NoCarrierPage}, "Browser linked, waiting for a carrier page");
        row({.kind = Kind::PageOpen, .name = QStringLiteral("tools.usps.com")},
            "Browser linked, USPS page open");
        row({.kind = Kind::PageOpen, .name = QStringLiteral("ups.com")},
            "Browser linked, UPS page open");
        row({.kind = Kind::PageOpen, .name = QStringLiteral("groups.com")},
            "Browser linked, groups.com page open");
        row({.kind = Kind::Filling, .name = QStringLiteral("www.fedex.com"), .fields = 13},
            "Filling FedEx: 13 fields");
        row({.kind = Kind::Filling, .name = QStringLiteral("www.usps.com"), .fields = 1},
            "Filling USPS: 1 field");
        row({.kind = Kind::Filling,
             .name = QStringLiteral("www.fedex.com"),
             .fields = 13,
             .otherNumbers = 1},
            "FedEx: 1 field shows another number");
        row({.kind = Kind::Filling,
             .name = QStringLiteral("www.fedex.com"),
             .fields = 13,
             .otherNumbers = 2},
            "FedEx: 2 fields show another number");
        row({.kind = Kind::PageOpen}, "Browser linked, a page open");
        row({.kind = Kind::Filling, .fields = 2}, "Filling the page: 2 fields");
        row({.kind = Kind::Filling, .fields = 2, .otherNumbers = 1},
            "Page: 1 field shows another number");
        row({.kind = Kind::NotAnswering}, "Page not answering");
    }

    void situations()
    {
        QFETCH(BrowserSituation, situation);
        QFETCH(QString, text);
        QCOMPARE(situation.text(), text);
    }
};

TEST_CLASS_INSIDE(QCoreApplication, BrowserMessageTest)
#include "BrowserMessageTest.moc"
