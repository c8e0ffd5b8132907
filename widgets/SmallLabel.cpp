// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/SmallLabel.h"

#include <QPainter>
#include <QStyle>
#include <cmath>

namespace {

constexpr qreal partOfText = 0.85;

QSize smaller(const QSize &size)
{
    return {static_cast<int>(std::ceil(size.width() * partOfText)),
            static_cast<int>(std::ceil(size.height() * partOfText))};
}

} // namespace

QSize SmallLabel::sizeHint() const
{
    return smaller(QLabel::sizeHint());
}

QSize SmallLabel::minimumSizeHint() const
{
    return smaller(QLabel::minimumSizeHint());
}

void SmallLabel::setOpacity(qreal opacity)
{
    m_opacity = opacity;
    update();
}

void SmallLabel::paintEvent(QPaintEvent *)
{
    const QRectF inside = contentsRect();
    const QRectF enlarged(inside.topLeft() / partOfText, inside.size() / partOfText);
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    painter.scale(partOfText, partOfText);
    style()->drawItemText(&painter, enlarged.toAlignedRect(), static_cast<int>(alignment()),
                          palette(), isEnabled(), text(), foregroundRole());
}
