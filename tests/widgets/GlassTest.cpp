// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/Glass.h"
#include "tests/support/TestClasses.h"

#include <QImage>
#include <QPainter>
#include <cstdlib>

namespace {

QImage glass(QSize size, qreal unit)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGlass(painter, size, unit);
    return image;
}

constexpr QSize designedGlass(592, 232);

bool isAlike(const QColor &one, const QColor &other)
{
    constexpr int hardlySeen = 6;
    return std::abs(one.red() - other.red()) <= hardlySeen &&
           std::abs(one.green() - other.green()) <= hardlySeen &&
           std::abs(one.blue() - other.blue()) <= hardlySeen && one.alpha() == other.alpha();
}

} // namespace

/// What the display is before anything is written on it.
class GlassTest : public QObject
{
    Q_OBJECT

private slots:
    /// As it was drawn on paper; the places are those of the designed size.
    void hasItsTones_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QColor>("colour");
        QTest::newRow("corner") << QPoint(1, 1) << QColor(0, 0, 0, 0);
        QTest::newRow("bezel, above") << QPoint(300, 5) << QColor(57, 64, 71);
        QTest::newRow("bezel, below") << QPoint(300, 226) << QColor(21, 25, 29);
        QTest::newRow("bezel, right") << QPoint(587, 116) << QColor(39, 45, 50);
        QTest::newRow("glass, right above") << QPoint(560, 40) << QColor(204, 213, 194);
        QTest::newRow("glass, right below") << QPoint(560, 200) << QColor(180, 191, 166);
        QTest::newRow("glare") << QPoint(60, 40) << QColor(212, 220, 204);
        QTest::newRow("glare, below") << QPoint(60, 200) << QColor(183, 194, 170);
        QTest::newRow("shade") << QPoint(560, 12) << QColor(157, 165, 152);
    }

    void hasItsTones()
    {
        QFETCH(QPoint, place);
        QFETCH(QColor, colour);
        const QColor drawn = glass(designedGlass, 1).pixelColor(place);
        QVERIFY2(isAlike(drawn, colour), qPrintable(drawn.name(QColor::HexArgb)));
    }

    /// However wide the window is.
    void theBezelKeepsItsWidth()
    {
        const QImage wide = glass(QSize(900, 232), 1);
        const QImage usual = glass(designedGlass, 1);
        for (int x = 0; x < 20; ++x) {
            QCOMPARE(wide.pixelColor(899 - x, 116), usual.pixelColor(591 - x, 116));
            QCOMPARE(wide.pixelColor(x, 116), usual.pixelColor(x, 116));
        }
    }

    void growsInProportion()
    {
        const QImage twice = glass(designedGlass * 2, 2);
        const QImage once = glass(designedGlass, 1);
        for (const QPoint place :
             {QPoint(5, 116), QPoint(60, 40), QPoint(300, 116), QPoint(560, 40)})
            QVERIFY(isAlike(twice.pixelColor(place * 2), once.pixelColor(place)));
    }

    /// A window may be of any size for a moment.
    void noSizeIsTooSmall()
    {
        for (const int width : {0, 1, 5, 21})
            glass(QSize(width, width), 0.02);
        QVERIFY(!glass(QSize(21, 21), 0.02).isNull());
    }
};

TEST_CLASS_INSIDE(QApplication, GlassTest)
#include "GlassTest.moc"
