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

/// The one colour that the picture is drawn in.
QRgb inkOf(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) == 255)
                return image.pixel(x, y);
    throw std::runtime_error("a picture without ink");
}

/// How much of its ink a picture has at each place, from the top down, which the program takes as
/// it lies. Programs that know no opacity of a palette's colours show the ink alone.
void writeBitmap(const QImage &image, const QString &name)
{
    constexpr quint32 fileHeader = 14;
    constexpr quint32 header = 40;
    constexpr quint32 colours = 256;
    constexpr quint32 gap = 2; // an image begins at a multiple of four bytes
    constexpr quint32 pixelsAt = fileHeader + header + colours * 4 + gap;
    constexpr quint32 asTheyAre = 0;
    const QImage opacities = image.convertToFormat(QImage::Format_Alpha8);
    const auto pixels = static_cast<quint32>(opacities.sizeInBytes());
    const QRgb ink = inkOf(image);

    QFile file(name);
    if (!file.open(QIODevice::WriteOnly))
        throw std::runtime_error("cannot write " + name.toStdString());
    QDataStream stream(&file);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.writeRawData("BM", 2);
    stream << pixelsAt + pixels << quint32(0) << pixelsAt;
    stream << header << image.width() << -image.height();
    stream << quint16(1) << quint16(8) << asTheyAre << pixels;
    stream << quint32(0) << quint32(0) << colours << colours;
    for (quint32 opacity = 0; opacity < colours; ++opacity)
        stream << ((ink & 0x00ffffff) | opacity << 24);
    stream << quint16(0);
    // The image leaves what fills a row up as the memory happened to be.
    const QByteArray filling(opacities.bytesPerLine() - opacities.width(), '\0');
    for (int y = 0; y < opacities.height(); ++y) {
        stream.writeRawData(reinterpret_cast<const char *>(opacities.constScanLine(y)),
                            opacities.width());
        stream.writeRawData(filling.constData(), int(filling.size()));
    }
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

    writeBitmap(image, fileName(directory, name, variant));
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
