// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ImageView.h"

#include "widgets/PictureCache.h"

#include <QPainter>

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

void ImageView::setOpacity(qreal opacity)
{
    m_opacity = opacity;
    update();
}

bool ImageView::isEmpty() const
{
    return PictureCache::pictureSize(m_imageName).isEmpty();
}

QSize ImageView::sizeHint() const
{
    return PictureCache::pictureSize(m_imageName);
}

void ImageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    PictureCache unkept;
    (m_pictures ? m_pictures : &unkept)->paint(painter, m_imageName, rect());
}
