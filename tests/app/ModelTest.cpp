// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/UnitRules.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

namespace {

using Scale = LaunchedApplication::Scale;

enum class Place { PopUp, Menu };

const QString refused = QStringLiteral("Device Not Connected/Detected!!!");

struct ModelRow
{
    const char *name;
    int fromPopUp; ///< its unit set; noChange: the one before stays
    int fromMenu;
};

constexpr int noChange = -7;

/// In the order of the lists.
constexpr std::array<ModelRow, 9> modelTable{{
    {"KV-A100", 0, 0},
    {"KV-A200", 1, 1},
    {"KV-B100", 2, 2},
    {"KV-B200", 3, 3},
    {"KV-B300", 4, 4},
    {"KV-C100", 5, noChange},
    {"KV-C200", 6, 6},
    {"KV-C300", 7, 7},
    {"KV-C400", noChange, 5},
}};

/// Before each choice: a stored number that no model has.
constexpr int setBefore = 9;

void choose(LaunchedApplication &app, Place place, int position)
{
    if (place == Place::Menu) {
        app.delegate.modelMenu->actions().at(position)->trigger();
        return;
    }
    app.delegate.optionButton->setCurrentIndex(position);
    emit app.delegate.optionButton->activated(position);
}

QList<bool> menuMarks(const LaunchedApplication &app)
{
    QList<bool> marks;
    for (const QAction *item : app.delegate.modelMenu->actions())
        marks.append(item->isChecked());
    return marks;
}

QList<bool> onlyMark(int position)
{
    QList<bool> marks(9, false);
    marks[position] = true;
    return marks;
}

std::array<bool, 7> enabledRows(const LaunchedApplication &app)
{
    std::array<bool, 7> enabled{};
    for (std::size_t row = 0; row < enabled.size(); ++row)
        enabled[row] =
            app.delegate.radiogroup->buttons().at(static_cast<qsizetype>(row))->isEnabled();
    return enabled;
}

QByteArray storedSet(int unitSet)
{
    return "[General]\nlastSelectedValue=" + QByteArray::number(unitSet) + "\n";
}

const std::array<std::uint8_t, 9> startingUnit{0x00, 0xA0, 0x5F, 0xA0};

} // namespace

/// The choice of the scale's model, from both places.
class ModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::store(storedSet(setBefore)); }

    void choice_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<Place>("place");
        QTest::addColumn<Scale>("scale");
        QTest::addColumn<QString>("format");
        for (int position = 0; position < 9; ++position) {
            for (const Place place : {Place::PopUp, Place::Menu}) {
                for (const Scale scale : {Scale::Present, Scale::Absent}) {
                    for (const char *format : {"Postal Scale-%1", "Kelvane-%1"})
                        QTest::addRow("%s from the %s, %s, %s",
                                      modelTable.at(static_cast<std::size_t>(position)).name,
                                      place == Place::PopUp ? "pop-up" : "menu",
                                      scale == Scale::Present ? "scale" : "no scale", format)
                            << position << place << scale << QString::fromLatin1(format);
                }
            }
        }
    }

    void choice()
    {
        QFETCH(int, position);
        QFETCH(Place, place);
        QFETCH(Scale, scale);
        QFETCH(QString, format);
        const QByteArray isUSPS = format.startsWith(QLatin1Char('P')) ? "\"YES\"" : "\"NO\"";
        LaunchedApplication app(scale, bundleInformation(isUSPS, nineModels));
        app.mark(app.delegate.rg1, true);
        app.link.setUnitnumber(5);
        app.link.setDotunit(5);
        app.link.setUnitindex(1);
        app.link.setCurrentUnit(1);
        app.forgetTraffic();

        choose(app, place, position);
        if (place == Place::Menu && scale == Scale::Absent)
            expectRefusal(app, format);
        else
            expectChoice(app, place, position, scale, format);
        QVERIFY(!app.delegate.pausereadtimer);
    }

    void theCheckMarkMovesWithEachChoice()
    {
        LaunchedApplication app(Scale::Present);
        for (const int position : {3, 8, 8, 0, 5}) {
            choose(app, Place::Menu, position);
            QCOMPARE(menuMarks(app), onlyMark(position));
        }
        choose(app, Place::PopUp, 2);
        QCOMPARE(menuMarks(app), onlyMark(5));
    }

    void refusalBeginsAndEndsWithTheScale()
    {
        LaunchedApplication app(Scale::Absent);
        choose(app, Place::Menu, 3);
        app.plug();
        choose(app, Place::Menu, 4);
        app.unplug();
        choose(app, Place::Menu, 6);
        QCOMPARE(app.logged(refused), 2);
        QCOMPARE(menuMarks(app), onlyMark(4));
        QCOMPARE(app.delegate.selectedModelName(), QStringLiteral("KV-B300"));
    }

    void unknownNamesKeepTheUnitSet()
    {
        for (const char *name : {"KV-X900", "kv-a100", "KV-A100 "}) {
            storedsettings::store(storedSet(setBefore));
            LaunchedApplication app(Scale::Present,
                                    bundleInformation("\"NO\"", QByteArray("[\"") + name + "\"]"));
            choose(app, Place::PopUp, 0);
            choose(app, Place::Menu, 0);
            QCOMPARE(app.hidapi.sent.size(), std::size_t{2});
            QCOMPARE(app.delegate.window->windowTitle(),
                     QStringLiteral("Kelvane-") + QString::fromLatin1(name));
            QCOMPARE(storedsettings::text(), storedSet(setBefore));
        }
    }

    void startingUnitIsShownOnARowThatTheModelLacks()
    {
        LaunchedApplication app(Scale::Present);
        choose(app, Place::PopUp, 7);
        QVERIFY(app.delegate.rg3->isChecked());
        QVERIFY(!app.delegate.rg3->isEnabled());
    }

    void noReadingIsTakenWhileTheUnitIsSent_data()
    {
        QTest::addColumn<Place>("place");
        QTest::newRow("pop-up") << Place::PopUp;
        QTest::newRow("menu") << Place::Menu;
    }

    void noReadingIsTakenWhileTheUnitIsSent()
    {
        QFETCH(Place, place);
        LaunchedApplication app(Scale::Present);
        bool paused = false;
        app.hidapi.duringSend = [&] {
            paused = app.delegate.pausereadtimer;
            if (paused)
                app.delegate.readData(app.timers().front());
        };
        app.forgetTraffic();
        choose(app, place, 2);
        QVERIFY(paused);
        QVERIFY(app.polls().empty());
        QCOMPARE(app.logged(QStringLiteral("readData")), 0);
    }

    void theFieldsAreSetBeforeTheCommandGoesOut()
    {
        for (const Place place : {Place::PopUp, Place::Menu}) {
            LaunchedApplication app(Scale::Present);
            app.link.setUnitnumber(5);
            app.link.setDotunit(5);
            app.link.setCurrentUnit(1);
            std::array<int, 4> fields{};
            app.hidapi.duringSend = [&] {
                fields = {app.link.unitnumber(), app.link.dotunit(), app.link.currentUnit(),
                          app.link.unitindex()};
            };
            choose(app, place, 2);
            QCOMPARE(fields, (std::array{3, 3, 4, 4}));
        }
    }

    void aFailedSendChangesTheRestAllTheSame()
    {
        LaunchedApplication app(Scale::Present);
        app.hidapi.sendFails = true;
        choose(app, Place::PopUp, 3);
        QVERIFY(app.log.lines().contains(QStringLiteral("io: Unable to read()")));
        QCOMPARE(app.link.currentUnit(), 4);
        QCOMPARE(enabledRows(app), rules::rowsEnabled(3));
    }

private:
    static void expectRefusal(const LaunchedApplication &app, const QString &format)
    {
        QCOMPARE(app.log.lines(), QStringList{refused});
        QVERIFY(app.hidapi.sent.empty());
        QCOMPARE(menuMarks(app), onlyMark(0));
        QCOMPARE(app.delegate.window->windowTitle(), format.arg(QStringLiteral("KV-A100")));
        QCOMPARE(app.delegate.selectedModelName(), QString());
        QVERIFY(app.delegate.rg1->isChecked());
        QCOMPARE(app.link.unitnumber(), 5);
        QCOMPARE(app.link.unitindex(), 1);
        QCOMPARE(storedsettings::text(), storedSet(setBefore));
    }

    static void expectChoice(const LaunchedApplication &app, Place place, int position, Scale scale,
                             const QString &format)
    {
        const ModelRow &model = modelTable.at(static_cast<std::size_t>(position));
        const int chosen = place == Place::PopUp ? model.fromPopUp : model.fromMenu;
        const int unitSet = chosen == noChange ? setBefore : chosen;
        const QString name = QString::fromLatin1(model.name);
        QCOMPARE(app.delegate.selectedModelName(), name);
        QCOMPARE(app.delegate.window->windowTitle(), format.arg(name));
        QCOMPARE(app.delegate.optionButton->currentIndex(), place == Place::PopUp ? position : 0);
        QCOMPARE(menuMarks(app), onlyMark(place == Place::PopUp ? 0 : position));
        QCOMPARE(enabledRows(app), rules::rowsEnabled(unitSet));
        QCOMPARE(storedsettings::text(), storedSet(unitSet));
        QVERIFY(app.delegate.rg3->isChecked());
        QCOMPARE(app.link.unitnumber(), 3);
        QCOMPARE(app.link.dotunit(), 3);
        QCOMPARE(app.link.unitindex(), 4);
        QCOMPARE(app.link.currentUnit(), 4);
        QCOMPARE(app.link.scaleCommand(), 0x5F);
        if (scale == Scale::Present)
            QCOMPARE(app.hidapi.sent, std::vector{startingUnit});
        else
            QCOMPARE(app.log.lines(), QStringList{QStringLiteral("io: Unable to read()")});
    }
};

TEST_CLASS(ModelTest)
#include "ModelTest.moc"
