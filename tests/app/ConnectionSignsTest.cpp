// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/LaunchedApplication.h"
#include "tests/support/TestClasses.h"
#include "widgets/ConnectionLamp.h"

#include <QStatusBar>

namespace {

using Scale = LaunchedApplication::Scale;

QString lamp(const LaunchedApplication &app)
{
    return app.delegate.connectionLamp->accessibleName();
}

/// The whole texts of the notices along the window's edge.
QString notices(const LaunchedApplication &app)
{
    QString all;
    for (const QLabel *label : app.delegate.window->statusBar()->findChildren<QLabel *>())
        all += label->toolTip();
    return all;
}

} // namespace

/// What tells of the connection beside its text: the lamp, the notice and the tooltip.
class ConnectionSignsTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { storedsettings::forget(); }

    void theLampFollowsTheScale()
    {
        LaunchedApplication app(Scale::Absent);
        QCOMPARE(lamp(app), QStringLiteral("Not connected"));
        app.plug();
        QCOMPARE(lamp(app), QStringLiteral("Connected"));
        app.unplug();
        QCOMPARE(lamp(app), QStringLiteral("Not connected"));
    }

    void troubleIsLitForAsLongAsItLasts()
    {
        LaunchedApplication app(Scale::Absent);
        app.hidapi.openFails = true;
        app.plug();
        QCOMPARE(lamp(app), QStringLiteral("Trouble"));
        QVERIFY(notices(app).contains(QStringLiteral("hidraw0")));
        QCOMPARE(app.delegate.connectionStatuslbl->toolTip(), app.delegate.connectionTrouble());
        app.unplug(); // nothing was opened yet, so that the status stays
        QCOMPARE(lamp(app), QStringLiteral("Connected"));
        QVERIFY(!notices(app).contains(QStringLiteral("hidraw0")));
    }

    void troubleAndItsEndShowAtOnce()
    {
        LaunchedApplication app(Scale::Present);
        app.delegate.setConnectionTrouble(QStringLiteral("worn out"));
        QCOMPARE(lamp(app), QStringLiteral("Trouble"));
        QCOMPARE(app.delegate.connectionTrouble(), QStringLiteral("worn out"));
        app.delegate.setConnectionTrouble({});
        QCOMPARE(lamp(app), QStringLiteral("Connected"));
    }
};

TEST_CLASS(ConnectionSignsTest)
#include "ConnectionSignsTest.moc"
