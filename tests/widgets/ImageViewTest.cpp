// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ImageView.h"
#include "tests/support/TestClasses.h"
#include "widgets/PictureCache.h"

#include <QPainter>

namespace {

class CountingView : public ImageView
{
public:
    using ImageView::ImageView;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        ImageView::paintEvent(event);
    }
};

/// What the view puts on the glass, and nothing else.
QImage drawn(ImageView &view)
{
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

bool isBlank(const QImage &image)
{
    QImage blank(image.size(), image.format());
    blank.fill(Qt::transparent);
    return image == blank;
}

QImage resource(const QString &path)
{
    QImage image;
    image.load(path, "BMP");
    // A pixel's number is how much of the ink it has, which the toolkit does not take for opacity.
    for (int opacity = 0; opacity < image.colorCount(); ++opacity)
        image.setColor(opacity, qRgba(qRed(image.color(opacity)), qGreen(image.color(opacity)),
                                      qBlue(image.color(opacity)), opacity));
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace

class ImageViewTest : public QObject
{
    Q_OBJECT

private slots:
    void holdsNamedPicture();
    void missingPictureLeavesViewEmpty_data();
    void missingPictureLeavesViewEmpty();
    void isFaintAsItsOpacitySays();
    void paintsOnlyForAnotherName();
    void takesSmallestVariantThatIsLargeEnough_data();
    void takesSmallestVariantThatIsLargeEnough();
    void picturesHaveTheAskedSize_data();
    void picturesHaveTheAskedSize();
    void fillsItsPlaceAtEveryScreenScale_data();
    void fillsItsPlaceAtEveryScreenScale();
    void letsTheMouseThrough();
};

void ImageViewTest::holdsNamedPicture()
{
    ImageView view;
    QVERIFY(view.isEmpty());
    view.setImage(QStringLiteral("8.bmp"));
    QCOMPARE(view.imageName(), QStringLiteral("8.bmp"));
    QVERIFY(!view.isEmpty());
    view.resize(view.sizeHint());
    QVERIFY(!isBlank(drawn(view)));
}

void ImageViewTest::isFaintAsItsOpacitySays()
{
    const auto darkest = [](const QImage &image) {
        int alpha = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                alpha = std::max(alpha, qAlpha(image.pixel(x, y)));
        }
        return alpha;
    };
    ImageView view;
    view.setImage(QStringLiteral("8.bmp"));
    view.resize(view.sizeHint());
    QCOMPARE(darkest(drawn(view)), 255);
    view.setOpacity(0.4);
    QVERIFY(std::abs(darkest(drawn(view)) - 102) <= 1); // rounded by the painter
    view.setOpacity(1);
    QCOMPARE(darkest(drawn(view)), 255);
}

void ImageViewTest::missingPictureLeavesViewEmpty_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("number of two digits") << QStringLiteral("10.bmp");
    QTest::newRow("division by zero") << QStringLiteral("inf.bmp");
    QTest::newRow("zero by zero") << QStringLiteral("nan.bmp");
    QTest::newRow("negative") << QStringLiteral("-1.bmp");
    QTest::newRow("without suffix") << QStringLiteral("8");
    QTest::newRow("no name") << QString();
}

void ImageViewTest::missingPictureLeavesViewEmpty()
{
    QFETCH(QString, name);
    ImageView view;
    view.resize(84, 136);
    view.setImage(QStringLiteral("8.bmp"));
    view.setImage(name);
    QCOMPARE(view.imageName(), name);
    QVERIFY(view.isEmpty());
    QVERIFY(isBlank(drawn(view)));
}

void ImageViewTest::paintsOnlyForAnotherName()
{
    CountingView view;
    view.setImage(QStringLiteral("1.bmp"));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QTRY_VERIFY(view.paints > 0);
    view.paints = 0;

    view.setImage(QStringLiteral("1.bmp"));
    QCoreApplication::processEvents();
    QCOMPARE(view.paints, 0);

    view.setImage(QStringLiteral("2.bmp"));
    QTRY_COMPARE(view.paints, 1);
}

void ImageViewTest::takesSmallestVariantThatIsLargeEnough_data()
{
    QTest::addColumn<int>("scale");
    QTest::addColumn<QString>("path");
    QTest::newRow("1x") << 1 << QStringLiteral(":/panel/8.bmp");
    QTest::newRow("2x") << 2 << QStringLiteral(":/panel/8@2x.bmp");
    QTest::newRow("3x") << 3 << QStringLiteral(":/panel/8@3x.bmp");
}

void ImageViewTest::takesSmallestVariantThatIsLargeEnough()
{
    QFETCH(int, scale);
    QFETCH(QString, path);
    const QSize designed = PictureCache::pictureSize(QStringLiteral("8.bmp"));
    const QImage picture =
        PictureCache::picture(QStringLiteral("8.bmp"), designed * scale).toImage();
    QVERIFY(picture.convertToFormat(QImage::Format_ARGB32_Premultiplied) == resource(path));
}

void ImageViewTest::picturesHaveTheAskedSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("a third") << QSize(28, 45);
    QTest::newRow("half as large again") << QSize(126, 204);
    QTest::newRow("larger than the largest") << QSize(420, 680);
}

void ImageViewTest::picturesHaveTheAskedSize()
{
    QFETCH(QSize, size);
    const QPixmap picture = PictureCache::picture(QStringLiteral("8.bmp"), size);
    QCOMPARE(picture.size(), size);
    QVERIFY(picture.hasAlphaChannel());
    QVERIFY(PictureCache::picture(QStringLiteral("10.bmp"), size).isNull());
}

void ImageViewTest::fillsItsPlaceAtEveryScreenScale_data()
{
    QTest::addColumn<qreal>("ratio");
    QTest::newRow("100 %") << 1.0;
    QTest::newRow("150 %") << 1.5;
    QTest::newRow("200 %") << 2.0;
    QTest::newRow("300 %") << 3.0;
}

void ImageViewTest::fillsItsPlaceAtEveryScreenScale()
{
    QFETCH(qreal, ratio);
    const QRect place(10, 20, 84, 136);
    QImage screen((QSizeF(104, 176) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    screen.setDevicePixelRatio(ratio);
    screen.fill(Qt::transparent);
    QPainter painter(&screen);
    PictureCache().paint(painter, QStringLiteral("8.bmp"), place);
    painter.end();

    // Pixel for pixel what was asked for, in device pixels: nothing is scaled a second time.
    screen.setDevicePixelRatio(1);
    const QRect devicePlace((QPointF(place.topLeft()) * ratio).toPoint(),
                            (QSizeF(place.size()) * ratio).toSize());
    const QImage wanted =
        PictureCache::picture(QStringLiteral("8.bmp"), devicePlace.size()).toImage();
    QVERIFY(screen.copy(devicePlace) ==
            wanted.convertToFormat(QImage::Format_ARGB32_Premultiplied));
}

void ImageViewTest::letsTheMouseThrough()
{
    QWidget panel;
    panel.resize(100, 200);
    ImageView view(&panel);
    view.setGeometry(0, 0, 84, 136);
    view.setImage(QStringLiteral("8.bmp"));
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QVERIFY(view.isVisible());
    QCOMPARE(panel.childAt(20, 20), nullptr);
}

TEST_CLASS_INSIDE(QApplication, ImageViewTest)
#include "ImageViewTest.moc"
