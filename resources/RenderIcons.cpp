// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Build-time program: the program's icon in the sizes, in pixels, that browsers want of an
// extension, and a desktop of a window whose installed icon it does not find. It draws outlines
// only, so it needs no QGuiApplication, no display and no font.

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

bool render(QSvgRenderer &drawing, const QString &folder, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    return image.save(QStringLiteral("%1/icon-%2.png").arg(folder).arg(size));
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 4) {
        std::fputs("usage: render_icons DRAWING FOLDER SIZE...\n", stderr);
        return 2;
    }
    QSvgRenderer drawing;
    if (!drawing.load(QFile::decodeName(argv[1]))) {
        std::fprintf(stderr, "render_icons: cannot read %s\n", argv[1]);
        return 1;
    }
    for (int i = 3; i < argc; ++i) {
        const int size = QByteArray(argv[i]).toInt();
        if (size <= 0 || !render(drawing, QFile::decodeName(argv[2]), size)) {
            std::fprintf(stderr, "render_icons: cannot write the icon of size %s\n", argv[i]);
            return 1;
        }
    }
    return 0;
}
