// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/PictureCache.h"

#include <QPainter>
#include <QResource>
#include <QtEndian>

namespace {

constexpr int largestVariant = 3;

QString resourceName(const QString &name, int variant)
{
    if (variant == 1)
        return QStringLiteral(":/panel/") + name;
    const qsizetype dot = name.lastIndexOf(u'.');
    const qsizetype stem = dot < 0 ? name.size() : dot;
    return QStringLiteral(":/panel/%1@%2x%3").arg(name.left(stem)).arg(variant).arg(name.mid(stem));
}

/// A picture's file as render_panel writes it: a bitmap of one byte a pixel, from the top down,
/// whose palette has opacities, which the toolkit's own reader does not take.
class PictureFile
{
public:
    PictureFile(const QString &name, int variant)
        : m_bytes(QResource(resourceName(name, variant)).uncompressedData())
    {
    }

    QSize size() const
    {
        // The first pixel is behind all that is looked at.
        return m_bytes.isEmpty() ? QSize() : QSize(number(widthAt), -number(heightAt));
    }

    QImage image() const
    {
        if (m_bytes.isEmpty())
            return QImage();
        QImage image(at(number(pixelsAt)), size().width(), size().height(),
                     QImage::Format_Indexed8);
        QList<QRgb> palette(colours);
        for (int colour = 0; colour < colours; ++colour)
            palette[colour] = static_cast<QRgb>(number(paletteAt + 4 * colour));
        image.setColorTable(palette);
        return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }

private:
    // Places in the file.
    static constexpr int pixelsAt = 10;
    static constexpr int widthAt = 18;
    static constexpr int heightAt = 22;
    static constexpr int paletteAt = 54;
    static constexpr int colours = 256;

    const uchar *at(int place) const
    {
        return reinterpret_cast<const uchar *>(m_bytes.constData()) + place;
    }
    int number(int place) const { return qFromLittleEndian<qint32>(at(place)); }

    QByteArray m_bytes;
};

int variantFor(QSize designed, QSize wanted)
{
    for (int variant = 1; variant < largestVariant; ++variant) {
        const QSize offered = designed * variant;
        if (offered.width() >= wanted.width() && offered.height() >= wanted.height())
            return variant;
    }
    return largestVariant;
}

} // namespace

QSize PictureCache::pictureSize(const QString &name)
{
    return PictureFile(name, 1).size();
}

QPixmap PictureCache::picture(const QString &name, QSize size)
{
    PictureFile file(name, 1);
    const QSize designed = file.size();
    if (designed.isEmpty() || size.isEmpty())
        return QPixmap();
    if (const int variant = variantFor(designed, size); variant != 1)
        file = PictureFile(name, variant);
    return QPixmap::fromImage(
        file.image().scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void PictureCache::paint(QPainter &painter, const QString &name, const QRect &place)
{
    const qreal ratio = painter.device()->devicePixelRatio();
    QPixmap pixmap = painted(name, (QSizeF(place.size()) * ratio).toSize());
    if (pixmap.isNull())
        return;
    pixmap.setDevicePixelRatio(ratio);
    painter.drawPixmap(place.topLeft(), pixmap);
}

QPixmap PictureCache::painted(const QString &name, QSize size)
{
    const auto [begin, end] = m_painted.equal_range(name);
    for (auto known = begin; known != end; ++known) {
        if (known->second.size == size)
            return known->second.pixmap;
    }
    const QPixmap pixmap = picture(name, size);
    m_painted.emplace(name, Painted{size, pixmap});
    return pixmap;
}
