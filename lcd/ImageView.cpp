// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "lcd/ImageView.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QPixmapCache>

#include <array>
#include <map>

// Outside of the namespace, as the resource system wants it.
static void registerPictures()
{
    Q_INIT_RESOURCE(panel_pictures);
}

namespace {

constexpr int largestVariant = 3;

struct Picture
{
    QSize size;
    std::array<QImage, largestVariant> variants;
};

QString resourceName(const QString &name, int variant)
{
    if (variant == 1)
        return QStringLiteral(":/panel/") + name;
    const qsizetype dot = name.lastIndexOf(u'.');
    const qsizetype stem = dot < 0 ? name.size() : dot;
    return QStringLiteral(":/panel/%1@%2x%3").arg(name.left(stem)).arg(variant).arg(name.mid(stem));
}

// From an open file, because the reader would look for other files when there is none of the name.
// It goes by content then: the files are called .bmp, and are PNG for the sake of transparency.
QImage readPicture(const QString &name, int variant)
{
    QFile file(resourceName(name, variant));
    if (!file.open(QIODevice::ReadOnly))
        return QImage();
    return QImageReader(&file).read();
}

Picture &pictureNamed(const QString &name)
{
    static std::map<QString, Picture> pictures = [] {
        registerPictures();
        return std::map<QString, Picture>();
    }();
    const auto known = pictures.find(name);
    if (known != pictures.end())
        return known->second;
    Picture picture;
    picture.variants[0] = readPicture(name, 1);
    picture.size = picture.variants[0].size();
    return pictures.emplace(name, std::move(picture)).first->second;
}

int variantFor(QSize designed, QSize wanted)
{
    for (int variant = 1; variant < largestVariant; ++variant) {
        const QSize offered = designed * variant;
        if (offered.width() >= wanted.width() && offered.height() >= wanted.height())
            return variant;
    }
    return largestVariant;
}

const QImage &variantOf(Picture &picture, const QString &name, int variant)
{
    QImage &image = picture.variants[static_cast<std::size_t>(variant - 1)];
    if (image.isNull())
        image = readPicture(name, variant);
    return image;
}

} // namespace

ImageView::ImageView(QWidget *parent)
    : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ImageView::setImage(const QString &name)
{
    if (name == m_imageName)
        return;
    m_imageName = name;
    update();
}

bool ImageView::isEmpty() const
{
    return pictureSize(m_imageName).isEmpty();
}

QSize ImageView::sizeHint() const
{
    return pictureSize(m_imageName);
}

QSize ImageView::pictureSize(const QString &name)
{
    return pictureNamed(name).size;
}

QPixmap ImageView::picture(const QString &name, QSize size)
{
    Picture &picture = pictureNamed(name);
    if (picture.size.isEmpty() || size.isEmpty())
        return QPixmap();

    const QString key =
        QStringLiteral("panel/%1/%2x%3").arg(name).arg(size.width()).arg(size.height());
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap))
        return pixmap;
    const QImage &source = variantOf(picture, name, variantFor(picture.size, size));
    pixmap =
        QPixmap::fromImage(source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

void ImageView::paintPicture(QPainter &painter, const QString &name, const QRect &place)
{
    const qreal ratio = painter.device()->devicePixelRatio();
    QPixmap pixmap = picture(name, (QSizeF(place.size()) * ratio).toSize());
    if (pixmap.isNull())
        return;
    pixmap.setDevicePixelRatio(ratio);
    painter.drawPixmap(place.topLeft(), pixmap);
}

void ImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintPicture(painter, m_imageName, rect());
}
