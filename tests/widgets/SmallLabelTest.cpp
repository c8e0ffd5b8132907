// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/SmallLabel.h"
#include "tests/support/TestClasses.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

const QString words = QStringLiteral("Mac OS X 12.5.0");

/// The label alone, without what it stands on.
QImage inkOf(QLabel &label)
{
    QImage image(label.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    label.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

int darkest(const QImage &image)
{
    int alpha = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            alpha = std::max(alpha, image.pixelColor(x, y).alpha());
    }
    return alpha;
}

/// Where there is any.
QRect placeOfInk(const QImage &image)
{
    QRect place;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 100)
                place |= QRect(x, y, 1, 1);
        }
    }
    return place;
}

/// Within @p pixels on each side.
bool agree(const QRect &one, const QRect &other, int pixels)
{
    return one.marginsAdded(QMargins(pixels, pixels, pixels, pixels)).contains(other) &&
           other.marginsAdded(QMargins(pixels, pixels, pixels, pixels)).contains(one);
}

QFont sized(qreal points)
{
    QFont font;
    font.setPointSizeF(points);
    return font;
}

constexpr qreal large = 40; // points: hinting is small beside it
constexpr qreal partOfText = 0.85;

} // namespace

/// Small print.
class SmallLabelTest : public QObject
{
    Q_OBJECT

private slots:
    void itLooksLikeALabelWithASmallerFont()
    {
        QWidget window;
        window.setFont(sized(large));
        SmallLabel label(&window);
        QLabel plain(&window);
        plain.setFont(sized(large * partOfText));
        for (QLabel *each : {static_cast<QLabel *>(&label), &plain}) {
            each->setTextFormat(Qt::PlainText);
            each->setText(words);
            each->resize(700, 100);
        }
        const QRect place = placeOfInk(inkOf(plain));
        QVERIFY(!place.isEmpty());
        QVERIFY(agree(placeOfInk(inkOf(label)), place, place.width() / 50));
        QCOMPARE(darkest(inkOf(label)), darkest(inkOf(plain)));
        label.setEnabled(false);
        plain.setEnabled(false);
        QCOMPARE(darkest(inkOf(label)), darkest(inkOf(plain)));
    }

    /// One of another size would be looked for, and its letters drawn by themselves.
    void itHasNoFontOfItsOwn()
    {
        QWidget window;
        SmallLabel label(&window);
        QCOMPARE(label.font(), window.font());
        window.setFont(sized(large));
        QCOMPARE(label.font(), window.font());
    }

    void itTakesTheRoomOfItsText()
    {
        QWidget window;
        window.setFont(sized(large));
        SmallLabel label(&window);
        label.setText(words);
        QLabel plain(words, &window);
        const QSizeF expected = QSizeF(plain.sizeHint()) * partOfText;
        QCOMPARE(label.sizeHint(),
                 QSizeF(std::ceil(expected.width()), std::ceil(expected.height())).toSize());
        label.resize(label.sizeHint());
        const QRect place = placeOfInk(inkOf(label));
        QVERIFY(place.left() > 0 && place.right() < label.width() - 1);
        const QSize before = label.sizeHint();
        window.setFont(sized(large * 2));
        QVERIFY(agree(QRect(QPoint(), label.sizeHint()), QRect(QPoint(), before * 2), 20));
    }

    void itsInkIsAsPaleAsItIsAskedToBe()
    {
        QWidget window;
        SmallLabel label(&window);
        label.setText(words);
        label.resize(200, 30);
        const int full = darkest(inkOf(label));
        label.setOpacity(0.5);
        QCOMPARE(label.opacity(), 0.5);
        QVERIFY(std::abs(darkest(inkOf(label)) - full / 2) <= 2);
    }
};

TEST_CLASS_INSIDE(QApplication, SmallLabelTest)
#include "SmallLabelTest.moc"
