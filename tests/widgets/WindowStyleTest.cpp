// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/WindowStyle.h"
#include "tests/support/TestClasses.h"

#include <QImage>
#include <QPainter>
#include <QPalette>

namespace {

/// Of 255; how far the words stand out from what they stand on.
int distanceOfWords(const QPalette &palette, QPalette::ColorRole role = QPalette::ButtonText)
{
    QImage picture(80, 30, QImage::Format_RGB32);
    const QColor ground = palette.color(QPalette::Window);
    picture.fill(ground);
    QPainter painter(&picture);
    WindowStyle().drawItemText(&painter, picture.rect(), Qt::AlignCenter, palette,
                               palette.currentColorGroup() != QPalette::Disabled,
                               QStringLiteral("none"), role);
    painter.end();
    int most = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            most =
                std::max(most, std::abs(picture.pixelColor(x, y).lightness() - ground.lightness()));
    }
    return most;
}

QPalette coloured(const QColor &window, const QColor &text, const QColor &disabled)
{
    QPalette palette(text, window, window, window, window, text, text, window, window);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled);
    palette.setCurrentColorGroup(QPalette::Disabled);
    return palette;
}

} // namespace

class WindowStyleTest : public QObject
{
    Q_OBJECT

private slots:
    void disabledWordsAreSeenInAnyColours()
    {
        const QColor dark(42, 46, 50);
        const QColor light(239, 239, 239);
        const int darkOnDark = distanceOfWords(coloured(dark, Qt::white, QColor(35, 35, 35)));
        QVERIFY2(darkOnDark > 80, qPrintable(QString::number(darkOnDark)));
        const int lightOnLight = distanceOfWords(coloured(light, Qt::black, QColor(230, 230, 230)));
        QVERIFY2(lightOnLight > 80, qPrintable(QString::number(lightOnLight)));
    }

    void placeholdersAreSeenInADarkScheme()
    {
        QPalette palette = coloured(QColor(42, 46, 50), Qt::white, Qt::white);
        palette.setCurrentColorGroup(QPalette::Active);
        palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
        const int distance = distanceOfWords(palette, QPalette::PlaceholderText);
        QVERIFY2(distance > 80 && distance < 140, qPrintable(QString::number(distance)));
    }

    void thoseThatAreSeenStayAsQuietAsTheyAre()
    {
        const int quiet =
            distanceOfWords(coloured(QColor(239, 239, 239), Qt::black, QColor(190, 190, 190)));
        QVERIFY2(quiet > 20 && quiet < 60, qPrintable(QString::number(quiet)));
    }
};

TEST_CLASS_INSIDE(QApplication, WindowStyleTest)
#include "WindowStyleTest.moc"
