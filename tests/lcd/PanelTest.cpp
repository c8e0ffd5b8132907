// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"
#include "widgets/ImageView.h"

#include <algorithm>
#include <array>

namespace {

using Scale = LaunchedApplication::Scale;
using Delegate = PostalScaleAppDelegate;

struct NamedSegment
{
    const char *name;
    ImageView *Delegate::*view;
};

constexpr std::array<NamedSegment, 13> segments{{
    {":", &Delegate::colonImg},
    {".1", &Delegate::dot1Img},
    {".2", &Delegate::dot2Img},
    {".3", &Delegate::dot3Img},
    {".4", &Delegate::dot4Img},
    {"GM", &Delegate::gmImg},
    {"KG0", &Delegate::kgImg},
    {"LB", &Delegate::lbImg},
    {"OZ", &Delegate::ozImg},
    {"HOLD", &Delegate::lockImg},
    {"AC", &Delegate::plugImg},
    {"BAT", &Delegate::batteryImg},
    {"USB", &Delegate::USBImg},
}};

constexpr std::array digitsAndSigns{
    &Delegate::minusIMg, &Delegate::digZero,      &Delegate::digOne,   &Delegate::digTwo,
    &Delegate::digThree, &Delegate::numeratorImg, &Delegate::denomImg, &Delegate::lineImg,
};

constexpr std::array overloadPattern{&Delegate::errorIMG, &Delegate::errdasOne,
                                     &Delegate::errdastwo, &Delegate::errdasThree};

void setAllHidden(Delegate &delegate, bool hidden)
{
    for (const auto &segment : segments)
        (delegate.*segment.view)->setHidden(hidden);
    for (const auto view : digitsAndSigns)
        (delegate.*view)->setHidden(hidden);
    for (const auto view : overloadPattern)
        (delegate.*view)->setHidden(hidden);
}

/// Names of the segments that are shown, in the order of the table.
QStringList shownSegments(const Delegate &delegate)
{
    QStringList names;
    for (const auto &segment : segments) {
        if (!(delegate.*segment.view)->isHidden())
            names.append(QLatin1String(segment.name));
    }
    return names;
}

template <typename Views> int shownOf(const Delegate &delegate, const Views &views)
{
    return static_cast<int>(std::count_if(
        views.begin(), views.end(), [&](auto view) { return !(delegate.*view)->isHidden(); }));
}

} // namespace

/// The panel's operations on the window's own views.
class PanelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void aNameSwitchesItsSegmentAlone()
    {
        LaunchedApplication app(Scale::Absent);
        for (const auto &segment : segments) {
            const QLatin1String name(segment.name);
            setAllHidden(app.delegate, true);
            app.delegate.DrawIcon(name, true);
            QCOMPARE(shownSegments(app.delegate), QStringList{name});
            app.delegate.DrawIcon(name, false);
            QCOMPARE(shownSegments(app.delegate), QStringList());
        }
    }

    void anUnknownNameSwitchesNothing()
    {
        LaunchedApplication app(Scale::Absent);
        for (const char *name : {"", "KG", ".5", "gm"}) {
            setAllHidden(app.delegate, true);
            app.delegate.DrawIcon(QLatin1String(name), true);
            QCOMPARE(shownSegments(app.delegate), QStringList());
        }
    }

    void theGramsWord_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("shownBefore");
        QTest::addColumn<bool>("show");
        QTest::addColumn<bool>("shown");
        QTest::newRow("gram scale, shown") << 0 << false << true << true;
        QTest::newRow("gram scale, hidden") << 0 << true << false << false;
        QTest::newRow("tenth-ounce scale, not to be shown") << 1 << false << true << false;
        QTest::newRow("tenth-ounce scale, not to be hidden") << 1 << true << false << true;
        QTest::newRow("any other type, shown") << 2 << false << true << true;
        QTest::newRow("any other type, hidden") << 2 << true << false << false;
    }

    void theGramsWord()
    {
        QFETCH(int, type);
        QFETCH(bool, shownBefore);
        QFETCH(bool, show);
        LaunchedApplication app(Scale::Absent);
        app.link.setCurrentScale(type);
        app.delegate.gmImg->setHidden(!shownBefore);
        app.delegate.DrawIcon(QLatin1String("GM"), show);
        QTEST(!app.delegate.gmImg->isHidden(), "shown");
    }

    /// A tenth-ounce scale that follows a gram scale neither takes the word back nor blanks it.
    void theGramsWordOutlivesTheGramScale()
    {
        LaunchedApplication app(Scale::Present);
        app.stopPolling();
        app.read({0x01, 0x34, 0x12}); // 1234 g
        QVERIFY(!app.delegate.gmImg->isHidden());
        app.read({0x08, 0x34, 0x12});
        QVERIFY(!app.delegate.gmImg->isHidden());
        app.delegate.clearAll();
        QCOMPARE(shownSegments(app.delegate), QStringList{"GM"});
        app.link.setCurrentScale(0);
        app.delegate.clearAll();
        QCOMPARE(shownSegments(app.delegate), QStringList());
    }

    void aBlankPanel_data()
    {
        QTest::addColumn<bool>("shownBefore");
        QTest::newRow("after everything was shown") << true;
        QTest::newRow("when it was blank already") << false;
    }

    /// The overload pattern is no part of it.
    void aBlankPanel()
    {
        QFETCH(bool, shownBefore);
        LaunchedApplication app(Scale::Absent);
        setAllHidden(app.delegate, !shownBefore);
        app.delegate.lbUnitlbl->setHidden(!shownBefore);
        app.delegate.lbLBL->setText(QStringLiteral("1.234"));
        app.delegate.clearAll();
        QCOMPARE(shownSegments(app.delegate), QStringList());
        QCOMPARE(shownOf(app.delegate, digitsAndSigns), 0);
        QCOMPARE(app.delegate.lbLBL->text(), QString());
        QVERIFY(app.delegate.lbUnitlbl->isHidden());
        QCOMPARE(shownOf(app.delegate, overloadPattern), shownBefore ? 4 : 0);
    }

    void theOverloadPatternFollowsTheFlag()
    {
        LaunchedApplication app(Scale::Absent);
        for (const bool overload : {true, false, true}) {
            app.forgetTraffic();
            app.link.setOverloadFlag(overload);
            app.delegate.Draw5DigitOverload();
            QCOMPARE(shownOf(app.delegate, overloadPattern), overload ? 4 : 0);
            QCOMPARE(app.log.lines(), QStringList{"Draw5DigitOverload"});
        }
    }

    void theMinusSign()
    {
        LaunchedApplication app(Scale::Absent);
        for (const bool negative : {true, false, true}) {
            app.forgetTraffic();
            app.delegate.shownegativeSign(negative);
            QCOMPARE(!app.delegate.minusIMg->isHidden(), negative);
            QCOMPARE(app.log.lines(),
                     (QStringList{"shownegativeSign", negative ? "True" : "FALSE"}));
        }
    }

    void linesOfOneDrawing()
    {
        LaunchedApplication app(Scale::Absent);
        app.link.setCurrentScale(1);
        app.link.setCurrentUnit(3);
        app.forgetTraffic();
        app.delegate.Draw5Digit(105);
        app.delegate.DisplayUnit(3);
        QCOMPARE(app.log.lines(),
                 (QStringList{"Current Scale is 1 ", "nValue sent is 105 ", "1",
                              "Reched under for that case with temp=5 ",
                              "Inside Display unit=3 unitnumber=3 ", "rechaed under case 3"}));
    }

    void withoutTheFractionField()
    {
        LaunchedApplication app(Scale::Absent);
        setAllHidden(app.delegate, false);
        app.delegate.displayforLBOZsimple();
        for (const auto view :
             {&Delegate::numeratorImg, &Delegate::denomImg, &Delegate::lineImg, &Delegate::dot4Img})
            QVERIFY((app.delegate.*view)->isHidden());
        QCOMPARE(shownOf(app.delegate, digitsAndSigns), 5);
        QCOMPARE(shownSegments(app.delegate).size(), 12);
    }
};

TEST_CLASS(PanelTest)
#include "PanelTest.moc"
