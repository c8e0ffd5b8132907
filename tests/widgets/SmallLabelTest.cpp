// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/SmallLabel.h"
#include "tests/support/TestClasses.h"

#include <algorithm>
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

} // namespace

/// Small print.
class SmallLabelTest : public QObject
{
    Q_OBJECT

private slots:
    void itLooksLikeALabelOfTheToolkit()
    {
        QWidget window;
        SmallLabel label(&window);
        QLabel plain(&window);
        plain.setFont(label.font());
        for (QLabel *each : {static_cast<QLabel *>(&label), &plain}) {
            each->setTextFormat(Qt::PlainText);
            each->setText(words);
            each->resize(200, 30);
        }
        QVERIFY(darkest(inkOf(plain)) > 0);
        QCOMPARE(inkOf(label), inkOf(plain));
        QCOMPARE(label.sizeHint(), plain.sizeHint());
        label.setEnabled(false);
        plain.setEnabled(false);
        QCOMPARE(inkOf(label), inkOf(plain));
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
