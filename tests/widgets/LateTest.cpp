// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/TestClasses.h"
#include "widgets/FirstFrame.h"
#include "widgets/LateIcon.h"

#include <QElapsedTimer>
#include <QPixmap>
#include <QPointer>
#include <QWindow>

namespace {

class PaintedWidget : public QWidget
{
public:
    bool isPainted = false;

protected:
    void paintEvent(QPaintEvent *) override { isPainted = true; }
};

QIcon redIcon()
{
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    return pixmap;
}

} // namespace

/// What the start leaves for later.
class LateTest : public QObject
{
    Q_OBJECT

private slots:
    void workWaitsForTheFirstFrame()
    {
        PaintedWidget window;
        window.show();
        bool wasPainted = false;
        int times = 0;
        const QPointer<FirstFrame> frame = new FirstFrame(window, [&] {
            wasPainted = window.isPainted;
            ++times;
        });
        QCOMPARE(times, 0);
        QTRY_COMPARE(times, 1);
        QVERIFY(wasPainted);
        QTRY_VERIFY(!frame);
        window.hide();
        window.show();
        QTRY_VERIFY(window.windowHandle()->isExposed());
        QCOMPARE(times, 1);
    }

    void aWindowThatNobodySeesIsNotWaitedForForEver()
    {
        PaintedWidget window;
        window.winId();
        QElapsedTimer time;
        time.start();
        int times = 0;
        new FirstFrame(window, [&] { ++times; });
        QTRY_COMPARE(times, 1);
        QVERIFY(time.elapsed() >= 500);
        QVERIFY(!window.isPainted);
    }

    void aWindowThatGoesTakesItWithIt()
    {
        int times = 0;
        {
            PaintedWidget window;
            window.winId();
            new FirstFrame(window, [&] { ++times; });
        }
        QTest::qWait(1200);
        QCOMPARE(times, 0);
    }

    void anIconIsMadeWhenItIsShown()
    {
        int times = 0;
        const QIcon icon = lateIcon([&] {
            ++times;
            return redIcon();
        });
        const QIcon copy = icon;
        QVERIFY(!icon.isNull());
        QCOMPARE(times, 0);
        QCOMPARE(icon.pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::red));
        QCOMPARE(copy.pixmap(16, 16).size(), QSize(16, 16));
        QCOMPARE(times, 1);
    }
};

TEST_CLASS_INSIDE(QApplication, LateTest)
#include "LateTest.moc"
