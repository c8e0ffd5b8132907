// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Build-time program: turns the groups "picture-NAME" of panel.svg into the bitmaps of the panel.
// It draws outlines only, so it needs no QGuiApplication, no display and no font.

#include <QDataStream>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace {

constexpr double tolerance = 0.001; // units of the drawing

QString fileName(const QString &directory, const QString &name, int variant)
{
    const QString suffix = variant == 1 ? QString() : QStringLiteral("@%1x").arg(variant);
    return QStringLiteral("%1/%2%3.bmp").arg(directory, name, suffix);
}

QSize boxOf(QSvgRenderer &drawing, const QString &element)
{
    if (!drawing.elementExists(element))
        throw std::runtime_error("no such element: " + element.toStdString());
    const QSizeF bounds = drawing.boundsOnElement(element).size();
    const QSize box = bounds.toSize();
    // A fraction means that something sticks out of the box, and the picture would be squeezed.
    if (std::abs(bounds.width() - box.width()) > tolerance ||
        std::abs(bounds.height() - box.height()) > tolerance)
        throw std::runtime_error("box is not whole units: " + element.toStdString());
    return box;
}

/// Qt reads bitmaps with alpha, which the glass needs to shine through, but writes none. PNG has
/// alpha too; undoing its filters took a sixth of the program's start.
void writeBitmap(const QImage &image, const QString &name)
{
    constexpr quint32 fileHeader = 14;
    constexpr quint32 version4Header = 108;
    constexpr quint32 withBitMasks = 3;
    constexpr int colourSpaceAndGamma = 52; // bytes, all 0: none
    const auto pixels = static_cast<quint32>(image.sizeInBytes());

    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + name.toStdString());
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("BM", 2);
    stream << fileHeader + version4Header + pixels << quint32(0) << fileHeader + version4Header;
    stream << version4Header << image.width() << image.height();
    stream << quint16(1) << quint16(32) << withBitMasks << pixels;
    stream << quint32(0) << quint32(0) << quint32(0) << quint32(0);
    stream << quint32(0x00ff0000) << quint32(0x0000ff00) << quint32(0x000000ff)
           << quint32(0xff000000);
    stream.writeRawData(QByteArray(colourSpaceAndGamma, 0).constData(), colourSpaceAndGamma);
    stream.writeRawData(reinterpret_cast<const char *>(image.constBits()), int(pixels));
    if (stream.status() != QDataStream::Ok || !file.flush())
        throw std::runtime_error("cannot write " + name.toStdString());
}

void render(QSvgRenderer &drawing, const QString &directory, const QString &name, int variant)
{
    const QString element = QStringLiteral("picture-") + name;
    QImage image(boxOf(drawing, element) * variant, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter, element, QRectF(QPointF(), image.size()));
    painter.end();

    // A bitmap begins with its lowest row.
    writeBitmap(image.mirrored().convertToFormat(QImage::Format_ARGB32),
                fileName(directory, name, variant));
}

void renderAll(const QStringList &arguments)
{
    QSvgRenderer drawing;
    if (!drawing.load(arguments.at(1)))
        throw std::runtime_error("cannot read " + arguments.at(1).toStdString());
    for (const QString &name : arguments.sliced(3))
        for (const int variant : {1, 2, 3})
            render(drawing, arguments.at(2), name, variant);
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QFile::decodeName(argv[i]);
    if (arguments.size() < 4) {
        std::fputs("usage: render_panel DRAWING DIRECTORY PICTURE...\n", stderr);
        return 2;
    }
    try {
        renderAll(arguments);
    } catch (const std::runtime_error &error) {
        std::fprintf(stderr, "render_panel: %s\n", error.what());
        return 1;
    }
    return 0;
}
