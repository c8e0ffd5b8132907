// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Build-time program: turns the program's icon into the pictures that its window hands to a desktop
// which does not find the installed one, 16 to 128 pixels wide.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s ICON.svg DIRECTORY SIZE...\n", argv[0]);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(argv[1]));
    for (int index = 3; index < argc; ++index) {
        const int size = QByteArray(argv[index]).toInt();
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter);
        painter.end();
        const QString name =
            QStringLiteral("%1/%2.png").arg(QString::fromLocal8Bit(argv[2])).arg(size);
        if (!drawing.isValid() || !image.save(name)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(name));
            return 1;
        }
    }
    return 0;
}
