// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/BuiltInIcon.h"

#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <algorithm>
#include <array>

namespace {

/// Pixels, ascending.
constexpr std::array builtInSizes{16, 24, 32, 48, 64, 128};

QImage readPicture(int size)
{
    // An icon that reads its files itself finds out their format by the plugins of all.
    QImageReader reader(QStringLiteral(":/icon/icon-%1.png").arg(size), "PNG");
    reader.setAutoDetectImageFormat(false);
    return reader.read();
}

class BuiltInIconEngine : public QIconEngine
{
public:
    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int wanted = std::min(size.width(), size.height());
        const auto *const larger =
            std::lower_bound(builtInSizes.begin(), builtInSizes.end(), wanted);
        if (larger == builtInSizes.end())
            return QPixmap::fromImage(readPicture(builtInSizes.back()));
        return QPixmap::fromImage(readPicture(*larger).scaled(wanted, wanted, Qt::IgnoreAspectRatio,
                                                              Qt::SmoothTransformation));
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int length = std::min({size.width(), size.height(), builtInSizes.back()});
        return {length, length};
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int size : builtInSizes)
            sizes.append({size, size});
        return sizes;
    }

    void paint(QPainter *painter, const QRect &place, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(place, pixmap(place.size(), mode, state));
    }

    QIconEngine *clone() const override { return new BuiltInIconEngine(*this); }
};

} // namespace

QIcon builtInIcon()
{
    return QIcon(new BuiltInIconEngine);
}
