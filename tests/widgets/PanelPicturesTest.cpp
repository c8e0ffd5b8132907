// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// The pictures of the display and their places on the glass, as MainWindow.ui has them.

#include "tests/support/TestClasses.h"
#include "ui_MainWindow.h"
#include "widgets/ImageView.h"
#include "widgets/PictureCache.h"

#include <QAccessible>
#include <QDir>
#include <QSet>

#include <algorithm>

namespace {

// Less is the faint end of a shadow.
constexpr int inkAlpha = 128;

QStringList pictureNames()
{
    QStringList names;
    for (int digit = 0; digit <= 9; ++digit)
        names << QString::number(digit);
    names << QStringLiteral("minus bar dot colon gm kg lb oz lock plug battery usb overload dash")
                 .split(u' ');
    return names;
}

QImage load(const QString &name, int variant)
{
    const QString suffix = variant == 1 ? QString() : QStringLiteral("@%1x").arg(variant);
    QImage image;
    image.load(QStringLiteral(":/panel/%1%2.bmp").arg(name, suffix), "BMP");
    // A pixel's number is how much of the ink it has.
    image.reinterpretAsFormat(QImage::Format_Alpha8);
    return image;
}

/// Bounds of the pixels that are at least so opaque.
QRect bounds(const QImage &image, int alpha)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) >= alpha)
                found |= QRect(x, y, 1, 1);
    return found;
}

/// Where a view's ink lies on the panel at its designed size.
QRect inkOnPanel(const ImageView *view, const QString &name)
{
    const QPixmap picture = PictureCache::picture(name, view->size());
    return bounds(picture.toImage(), inkAlpha).translated(view->pos());
}

class Window
{
public:
    Window()
    {
        form.setupUi(&window);
        form.boxGrid->removeWidget(panel()); // to be of any size
        panel()->resize(panel()->designSize());
        panel()->grab(); // lays out
    }

    PanelWidget *panel() const { return form.imageBox; }
    QList<ImageView *> views() const { return panel()->findChildren<ImageView *>(); }
    QList<ImageView *> digits() const
    {
        return {form.digZero, form.digOne, form.digTwo, form.digThree, form.numeratorImg};
    }

    QMainWindow window;
    Ui::MainWindow form;
};

} // namespace

class PanelPicturesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyPictureLoadsAtEveryScale_data();
    void everyPictureLoadsAtEveryScale();
    void whatFillsARowUpIsTheSameInEachBuild();
    void digitsDiffer();
    void everyFixedPictureExists();
    void picturesAreShownAtTheirOwnSize();
    void allViewsStartHidden();
    void baselinesAgree();
    void symbolsOfOneReadingDoNotTouch();
    void tenthsShareTheirPlaceWithTheFraction();
    void hiddenViewsKeepTheirPlace();
    void panelScalesInProportion_data();
    void panelScalesInProportion();
    void unlitSegmentsAreFaintlyThere();
    void readingIsWhatScreenReadersRead();
    void segmentsAreNoObjectsToScreenReaders();
};

void PanelPicturesTest::initTestCase()
{
    // The first view brings the pictures in.
    QVERIFY(!PictureCache::pictureSize(QStringLiteral("0.bmp")).isEmpty());
}

void PanelPicturesTest::everyPictureLoadsAtEveryScale_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("variant");
    for (const QString &name : pictureNames())
        for (const int variant : {1, 2, 3})
            QTest::addRow("%s at %dx", qPrintable(name), variant) << name << variant;
}

void PanelPicturesTest::everyPictureLoadsAtEveryScale()
{
    QFETCH(QString, name);
    QFETCH(int, variant);
    const QImage image = load(name, variant);
    QVERIFY(!image.isNull());
    QCOMPARE(image.size(), load(name, 1).size() * variant);

    const QRect ink = bounds(image, inkAlpha);
    QVERIFY(!ink.isEmpty());
    // A picture whose ink reaches the border is cut off.
    QVERIFY(image.rect().adjusted(1, 1, -1, -1).contains(ink));
}

void PanelPicturesTest::whatFillsARowUpIsTheSameInEachBuild()
{
    qsizetype filled = 0;
    for (const QString &name : QDir(QStringLiteral(":/panel")).entryList()) {
        QFile file(QStringLiteral(":/panel/") + name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const QImage image = QImage::fromData(bytes, "BMP");
        const qsizetype row = image.bytesPerLine();
        const qsizetype first = bytes.size() - row * image.height();
        const QByteArray zeros(row - image.width(), '\0');
        for (qsizetype end = first + row; end <= bytes.size(); end += row)
            QVERIFY2(bytes.sliced(end - zeros.size(), zeros.size()) == zeros, qPrintable(name));
        filled += zeros.size();
    }
    QVERIFY(filled > 0);
}

void PanelPicturesTest::digitsDiffer()
{
    for (int one = 0; one <= 9; ++one)
        for (int other = one + 1; other <= 9; ++other)
            QVERIFY(load(QString::number(one), 1) != load(QString::number(other), 1));
}

void PanelPicturesTest::everyFixedPictureExists()
{
    const Window window;
    const QList<ImageView *> changing = window.digits() << window.form.denomImg;
    for (const ImageView *view : window.views())
        QVERIFY2(view->isEmpty() == changing.contains(view), qPrintable(view->objectName()));
}

void PanelPicturesTest::picturesAreShownAtTheirOwnSize()
{
    const Window window;
    for (const ImageView *view : window.views())
        if (!view->imageName().isEmpty())
            QCOMPARE(view->size(), PictureCache::pictureSize(view->imageName()));
    for (const ImageView *digit : window.digits())
        QCOMPARE(digit->size(), PictureCache::pictureSize(QStringLiteral("8.bmp")));
}

void PanelPicturesTest::allViewsStartHidden()
{
    const Window window;
    QCOMPARE(window.views().size(), 25);
    for (const ImageView *view : window.views())
        QVERIFY2(view->isHidden(), qPrintable(view->objectName()));
}

void PanelPicturesTest::baselinesAgree()
{
    const Window window;
    const Ui::MainWindow &form = window.form;
    const QString eight = QStringLiteral("8.bmp");
    QSet<int> baselines;
    for (const ImageView *digit : window.digits())
        baselines << inkOnPanel(digit, eight).bottom();
    for (const ImageView *view :
         {form.dot1Img, form.dot2Img, form.dot3Img, form.dot4Img, form.lbImg, form.ozImg})
        baselines << inkOnPanel(view, view->imageName()).bottom();
    baselines << inkOnPanel(form.denomImg, eight).bottom();
    const auto [highest, lowest] = std::minmax_element(baselines.cbegin(), baselines.cend());
    // One pixel for round letters, which reach below the line as in any typeface.
    QVERIFY(*lowest - *highest <= 1);
}

void PanelPicturesTest::symbolsOfOneReadingDoNotTouch()
{
    const Window window;
    const Ui::MainWindow &form = window.form;
    QList<const ImageView *> views = {form.minusIMg, form.gmImg,   form.kgImg,   form.lbImg,
                                      form.ozImg,    form.lockImg, form.plugImg, form.batteryImg,
                                      form.USBImg,   form.lineImg};
    for (const ImageView *digit : {form.digZero, form.digOne, form.digTwo, form.digThree})
        views << digit;
    for (qsizetype i = 0; i < views.size(); ++i) {
        for (qsizetype j = i + 1; j < views.size(); ++j) {
            const auto ink = [](const ImageView *view) {
                const QString name = view->imageName();
                return inkOnPanel(view, name.isEmpty() ? QStringLiteral("8.bmp") : name);
            };
            QVERIFY2(!ink(views[i]).intersects(ink(views[j])),
                     qPrintable(views[i]->objectName() + u' ' + views[j]->objectName()));
        }
    }
}

void PanelPicturesTest::tenthsShareTheirPlaceWithTheFraction()
{
    const Window window;
    const Ui::MainWindow &form = window.form;
    const QRect tenths = form.numeratorImg->geometry();
    QCOMPARE(tenths.size(), form.digThree->size());
    QCOMPARE(tenths.top(), form.digThree->y());

    form.lineImg->setHidden(false);
    const QRect upper = form.numeratorImg->geometry();
    QCOMPARE(upper.size(), form.denomImg->size());
    const QString eight = QStringLiteral("8.bmp");
    const QRect bar = inkOnPanel(form.lineImg, form.lineImg->imageName());
    QVERIFY(inkOnPanel(form.numeratorImg, eight).bottom() < bar.top());
    QVERIFY(inkOnPanel(form.denomImg, eight).top() > bar.bottom());
    QVERIFY(tenths.contains(inkOnPanel(form.numeratorImg, eight)));

    form.lineImg->setHidden(true);
    QCOMPARE(form.numeratorImg->geometry(), tenths);
}

void PanelPicturesTest::hiddenViewsKeepTheirPlace()
{
    const Window window;
    const QRect before = window.form.digThree->geometry();
    window.form.digTwo->setHidden(false);
    window.form.digTwo->setHidden(true);
    window.panel()->grab();
    QCOMPARE(window.form.digThree->geometry(), before);
}

void PanelPicturesTest::panelScalesInProportion_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("factor");
    QTest::addColumn<QPoint>("origin");
    QTest::newRow("designed") << QSize(592, 232) << 1 << QPoint(0, 0);
    QTest::newRow("twice") << QSize(1184, 464) << 2 << QPoint(0, 0);
    QTest::newRow("too wide") << QSize(692, 232) << 1 << QPoint(50, 0);
    QTest::newRow("too high") << QSize(1184, 564) << 2 << QPoint(0, 50);
}

void PanelPicturesTest::panelScalesInProportion()
{
    QFETCH(QSize, size);
    QFETCH(int, factor);
    QFETCH(QPoint, origin);
    const Window designed;
    const Window window;
    QCOMPARE(window.panel()->designSize(), QSize(592, 232));
    window.panel()->resize(size);
    window.panel()->grab();
    for (const ImageView *view : designed.views()) {
        const auto *scaled = window.panel()->findChild<ImageView *>(view->objectName());
        QCOMPARE(scaled->geometry(), QRect(view->pos() * factor + origin, view->size() * factor));
    }
}

void PanelPicturesTest::unlitSegmentsAreFaintlyThere()
{
    const Window window;
    const QImage glass = window.panel()->grab().toImage();
    const QRect middle = window.form.digThree->geometry();
    const QRect bar = inkOnPanel(window.form.digThree, QStringLiteral("dash.bmp"));
    // Left of the middle segment and inside it, close enough to be in the same light.
    const int unlit = qGray(glass.pixel(bar.center()));
    const int bare = qGray(glass.pixel(bar.center() + QPoint(0, bar.height() + 8)));
    QVERIFY(middle.contains(bar));
    QVERIFY2(unlit < bare, "an unlit segment has to be made out");
    QVERIFY2(bare - unlit < 30, "an unlit segment must not be taken for a lit one");
}

void PanelPicturesTest::readingIsWhatScreenReadersRead()
{
    const Window window;
    const QAccessibleInterface *display = QAccessible::queryAccessibleInterface(window.panel());
    for (const QString &words : {QStringLiteral("2 pounds 11.5 ounces"), QStringLiteral("off")}) {
        window.panel()->setReadingText(words);
        QCOMPARE(display->text(QAccessible::Name), words);
        QCOMPARE(window.panel()->readingText(), words);
    }
    QVERIFY(!display->text(QAccessible::Description).isEmpty());
}

void PanelPicturesTest::segmentsAreNoObjectsToScreenReaders()
{
    const Window window;
    const QAccessibleInterface *display = QAccessible::queryAccessibleInterface(window.panel());
    QCOMPARE(display->role(), QAccessible::StaticText);
    QCOMPARE(display->childCount(), 2);
    for (int i = 0; i < display->childCount(); ++i) {
        const QAccessibleInterface *caption = display->child(i);
        QVERIFY(qobject_cast<QLabel *>(caption->object()));
        QCOMPARE(display->indexOfChild(caption), i);
    }
}

TEST_CLASS_INSIDE(QApplication, PanelPicturesTest)
#include "PanelPicturesTest.moc"
