// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/TestClasses.h"
#include "widgets/FirstFrame.h"
#include "widgets/LateIcon.h"
#include "widgets/WindowStyle.h"

#include <QElapsedTimer>
#include <QMenuBar>
#include <QPixmap>
#include <QPointer>
#include <QProxyStyle>
#include <QThread>
#include <QToolButton>
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

struct Look
{
    QImage image;
    QRect extension; ///< the button for what there is no room for; null where there is room

    bool operator==(const Look &) const = default;
};

Look lookOf(QMenuBar &bar)
{
    const QImage image = bar.grab().toImage();
    const auto *button = bar.findChild<QToolButton *>();
    return {.image = image, .extension = button->isVisible() ? button->geometry() : QRect()};
}

/// Of a menu bar that is made in that style, in windows of several widths, twice in each.
QList<Look> looksOfMenuBar(QStyle *style)
{
    QApplication::setStyle(style);
    QMenuBar bar;
    for (const char *title : {"File", "Models", "Options", "Help"})
        bar.addMenu(QLatin1String(title))->addAction(QStringLiteral("Do it"));
    bar.show();
    QList<Look> looks;
    for (const int width : {400, 130, 90, 60, 110, 400, 80}) {
        bar.resize(width, bar.sizeHint().height());
        QCoreApplication::processEvents();
        looks.append(lookOf(bar));
        looks.append(lookOf(bar));
    }
    return looks;
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

    void aStartThatIsHeldUpDrawsFirst()
    {
        PaintedWidget window;
        window.show();
        bool wasPainted = false;
        int times = 0;
        new FirstFrame(window, [&] {
            wasPainted = window.isPainted;
            ++times;
        });
        QThread::msleep(1500);
        QTRY_COMPARE(times, 1);
        QVERIFY(wasPainted);
    }

    void aWindowThatIsSeenLateIsDrawnAndNothingIsDoneAgain()
    {
        PaintedWidget window;
        window.winId();
        int times = 0;
        const QPointer<FirstFrame> frame = new FirstFrame(window, [&] {
            ++times;
            // At the worst moment.
            window.show();
        });
        QTRY_VERIFY(window.isPainted);
        QTRY_VERIFY(!frame);
        QTest::qWait(100);
        QCOMPARE(times, 1);
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

    void aMenuBarThatIsTooNarrowLooksAsWithTheIconFromTheStart()
    {
        const QList<Look> expected = looksOfMenuBar(new QProxyStyle);
        const QList<Look> looks = looksOfMenuBar(new WindowStyle);
        QVERIFY(looks.first().extension.isNull());
        QVERIFY(!looks.last().extension.isNull());
        QVERIFY(looks == expected);
    }
};

TEST_CLASS_INSIDE(QApplication, LateTest)
#include "LateTest.moc"
