// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeUdev.h"
#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"

#include <QLabel>
#include <QResource>
#include <QStatusBar>
#include <algorithm>

using namespace std::chrono_literals;

// Outside of any namespace, as the resource system wants it.
static void takePicturesAway()
{
    Q_CLEANUP_RESOURCE(panel_pictures);
    Q_CLEANUP_RESOURCE(larger_panel_pictures);
}

namespace {

struct MissingCall
{
    const char *name;
    bool fakeudev::Failing::*call;
};

constexpr std::array watching{
    MissingCall{"none", nullptr},
    MissingCall{"no monitor", &fakeudev::Failing::monitor},
    MissingCall{"no filter", &fakeudev::Failing::filter},
    MissingCall{"no reception", &fakeudev::Failing::receiving},
};
constexpr std::array listing{
    MissingCall{"none", nullptr},
    MissingCall{"no list", &fakeudev::Failing::enumeration},
    MissingCall{"an empty list", &fakeudev::Failing::scan},
};

const QString noEvents =
    QStringLiteral("No device events: a scale plugged in from now on is not noticed");

const QString notNoticed =
    QStringLiteral("A scale that is plugged in or unplugged now is not noticed");

/// The window, in its status line.
bool says(const LaunchedApplication &app, const QString &sentence)
{
    const auto lines = app.delegate.window->statusBar()->findChildren<QLabel *>();
    return std::any_of(lines.cbegin(), lines.cend(),
                       [&](const QLabel *line) { return line->text().contains(sentence); });
}

void setMissing(const MissingCall &fault, bool fails)
{
    if (fault.call != nullptr)
        fakeudev::failing().*fault.call = fails;
}

/// 1234 g, as the scale that counts grams reports them.
const std::vector<std::uint8_t> report{0x01, 0x34, 0x12};

} // namespace

/// What is missing from the first moment on.
class StartUpFaultsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    /// The views stay empty; the weight leaves the program all the same. Before all others: what
    /// has been painted once is kept.
    void pictures()
    {
        takePicturesAway();
        LaunchedApplication app(LaunchedApplication::Scale::Present);
        // The window has asked for them: what was registered for that is taken away again.
        takePicturesAway();
        QVERIFY(!QResource(QStringLiteral(":/panel/1.bmp")).isValid());
        app.stopPolling();
        app.delegate.rg5->click();
        app.read(report);
        QVERIFY(app.delegate.digZero->isEmpty());
        QVERIFY(!app.delegate.digZero->isHidden());
        QCOMPARE(app.delegate.lbLBL->text(), QStringLiteral("1.234"));
        app.delegate.window->grab();
    }

    void devices_data()
    {
        QTest::addColumn<std::size_t>("watchingFault");
        QTest::addColumn<std::size_t>("listingFault");
        for (std::size_t first = 0; first < watching.size(); ++first) {
            for (std::size_t second = 0; second < listing.size(); ++second)
                QTest::addRow("%s, %s", watching.at(first).name, listing.at(second).name)
                    << first << second;
        }
    }

    /// A scale that is there is found once it can be listed, watched for or not.
    void devices()
    {
        QFETCH(std::size_t, watchingFault);
        QFETCH(std::size_t, listingFault);
        const MissingCall &blind = watching.at(watchingFault);
        const MissingCall &unlisted = listing.at(listingFault);
        LaunchedApplication app(LaunchedApplication::Scale::Present, {}, [&] {
            setMissing(blind, true);
            setMissing(unlisted, true);
        });
        QCOMPARE(app.logged(noEvents), blind.call == nullptr ? 0 : 1);
        QCOMPARE(says(app, notNoticed), blind.call != nullptr);
        QCOMPARE(app.delegate.isDeviceConnected, unlisted.call == nullptr);
        app.pass(3000ms);
        QCOMPARE(app.delegate.isDeviceConnected, unlisted.call == nullptr);
        setMissing(unlisted, false);
        app.pass(1000ms);
        QVERIFY(app.delegate.isDeviceConnected);
        QCOMPARE(says(app, notNoticed), blind.call != nullptr);
        app.hidapi.reports.push_back(report);
        app.pass(400ms);
        QCOMPARE(app.delegate.gmImg->isHidden(), false);
        QCOMPARE(app.timers().size(), std::size_t{1});
        QCOMPARE(app.hidapi.openHandles, 1);
    }
};

TEST_CLASS(StartUpFaultsTest)
#include "StartUpFaultsTest.moc"
