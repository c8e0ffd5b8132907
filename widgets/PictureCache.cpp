// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/PictureCache.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>

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

/// A picture's file. A reader that were to find out the format would ask the plugins of all.
class PictureFile
{
public:
    PictureFile(const QString &name, int variant)
        : m_file(resourceName(name, variant))
        , m_reader(&m_file, "BMP")
    {
        m_reader.setAutoDetectImageFormat(false);
        m_isThere = m_file.open(QIODevice::ReadOnly);
    }

    QSize size() { return m_isThere ? m_reader.size() : QSize(); }
    QImage image() { return m_isThere ? m_reader.read() : QImage(); }

private:
    QFile m_file;
    QImageReader m_reader;
    bool m_isThere = false;
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
    const QSize designed = pictureSize(name);
    if (designed.isEmpty() || size.isEmpty())
        return QPixmap();
    const QImage source = PictureFile(name, variantFor(designed, size)).image();
    if (source.isNull())
        return QPixmap();
    return QPixmap::fromImage(source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
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
