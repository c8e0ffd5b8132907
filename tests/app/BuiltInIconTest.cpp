// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/BuiltInIcon.h"
#include "tests/support/TestClasses.h"

#include <QImage>
#include <QPixmap>

namespace {

const QList<int> sizes{16, 24, 32, 48, 64, 128};

QImage shown(const QPixmap &pixmap)
{
    return pixmap.toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage drawn(int size)
{
    return shown(QPixmap(QStringLiteral(":/icon/icon-%1.png").arg(size)));
}

} // namespace

/// What a desktop gets for the window that does not find the installed icon.
class BuiltInIconTest : public QObject
{
    Q_OBJECT

private slots:
    void eachSizeIsItsOwnDrawing()
    {
        const QIcon icon = builtInIcon();
        QVERIFY(!icon.isNull());
        QList<QSize> expected;
        for (const int size : sizes) {
            expected.append({size, size});
            QVERIFY(!drawn(size).isNull());
            QCOMPARE(shown(icon.pixmap(size, size)), drawn(size));
        }
        QCOMPARE(icon.availableSizes(), expected);
    }

    void othersComeFromTheNextLargerOne()
    {
        const QIcon icon = builtInIcon();
        QCOMPARE(icon.pixmap(20, 20).size(), QSize(20, 20));
        QCOMPARE(icon.pixmap(100, 100).size(), QSize(100, 100));
        QCOMPARE(icon.actualSize({40, 40}), QSize(40, 40));
        QCOMPARE(icon.actualSize({500, 300}), QSize(128, 128));
        QCOMPARE(shown(icon.pixmap(256, 256)), drawn(128));
    }
};

TEST_CLASS_INSIDE(QApplication, BuiltInIconTest)
#include "BuiltInIconTest.moc"
