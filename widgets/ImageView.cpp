// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ImageView.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>

#include <map>
#include <utility>

// Outside of the namespace, as the resource system wants it.
static void registerPictures()
{
    Q_INIT_RESOURCE(panel_pictures);
}

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

using PictureSizes = std::map<QString, QSize>;

PictureSizes &pictureSizes()
{
    static PictureSizes sizes;
    return sizes;
}

/// Pictures of one name at the sizes in which they have been painted.
struct PaintedPicture
{
    QSize size;
    QPixmap pixmap;
};
using PaintedPictures = std::multimap<QString, PaintedPicture>;

// The toolkit's own cache drops what is not on the screen for half a minute, and wakes up for it.
PaintedPictures &paintedPictures()
{
    static PaintedPictures pictures;
    return pictures;
}

QPixmap paintedPicture(const QString &name, QSize size)
{
    PaintedPictures &pictures = paintedPictures();
    const auto [begin, end] = pictures.equal_range(name);
    for (auto known = begin; known != end; ++known) {
        if (known->second.size == size)
            return known->second.pixmap;
    }
    const QPixmap pixmap = ImageView::picture(name, size);
    pictures.emplace(name, PaintedPicture{size, pixmap});
    return pixmap;
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
    static const bool registered = [] {
        registerPictures();
        return true;
    }();
    Q_UNUSED(registered)
    PictureSizes &sizes = pictureSizes();
    const auto known = sizes.find(name);
    if (known != sizes.end())
        return known->second;
    return sizes.emplace(name, PictureFile(name, 1).size()).first->second;
}

QPixmap ImageView::picture(const QString &name, QSize size)
{
    const QSize designed = pictureSize(name);
    if (designed.isEmpty() || size.isEmpty())
        return QPixmap();
    const QImage source = PictureFile(name, variantFor(designed, size)).image();
    if (source.isNull())
        return QPixmap();
    return QPixmap::fromImage(source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void ImageView::forgetPictures()
{
    pictureSizes().clear();
    paintedPictures().clear();
}

void ImageView::paintPicture(QPainter &painter, const QString &name, const QRect &place)
{
    const qreal ratio = painter.device()->devicePixelRatio();
    QPixmap pixmap = paintedPicture(name, (QSizeF(place.size()) * ratio).toSize());
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
