// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/Glass.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace {

// All in units of the designed glass.
constexpr qreal designedWidth = 592;
constexpr qreal cornerRadius = 14;
constexpr qreal openingRadius = 7;
constexpr qreal rimWidth = 1.5;
/// Below the upper bezel.
constexpr qreal shadeHeight = 12;
/// Ends of the light that falls on the left of the glass, at its top and at its bottom.
constexpr qreal glareTop = 380;
constexpr qreal glareBottom = 264;

const QColor rimColour(255, 255, 255, 41);
const QColor lineColour(11, 14, 16, 179);

QLinearGradient downwards(const QRectF &area, const QGradientStops &stops)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    gradient.setStops(stops);
    return gradient;
}

QGradientStops bezelTone()
{
    return {{0, QColor(58, 65, 72)}, {1, QColor(20, 24, 28)}};
}

QGradientStops glassTone()
{
    return {{0, QColor(207, 216, 198)}, {0.55, QColor(194, 204, 182)}, {1, QColor(176, 188, 162)}};
}

QGradientStops shadeTone()
{
    return {{0, QColor(16, 24, 16, 82)}, {1, QColor(16, 24, 16, 0)}};
}

QGradientStops glareTone()
{
    return {{0, QColor(255, 255, 255, 51)}, {1, QColor(255, 255, 255, 5)}};
}

/// Of the opening's left side, to a slanting right end.
QPainterPath glarePath(const QRectF &opening, qreal radius, qreal topEnd, qreal bottomEnd)
{
    const QSizeF corner(2 * radius, 2 * radius);
    QPainterPath path(QPointF(opening.left() + radius, opening.top()));
    path.lineTo(topEnd, opening.top());
    path.lineTo(bottomEnd, opening.bottom());
    path.lineTo(opening.left() + radius, opening.bottom());
    path.arcTo(QRectF(QPointF(opening.left(), opening.bottom() - corner.height()), corner), 270,
               -90);
    path.lineTo(opening.left(), opening.top() + radius);
    path.arcTo(QRectF(opening.topLeft(), corner), 180, -90);
    return path;
}

/// Of the opening's upper end.
QPainterPath shadePath(const QRectF &opening, qreal radius, qreal height)
{
    const QSizeF corner(2 * radius, 2 * radius);
    QPainterPath path(QPointF(opening.left(), opening.top() + height));
    path.lineTo(opening.left(), opening.top() + radius);
    path.arcTo(QRectF(opening.topLeft(), corner), 180, -90);
    path.arcTo(QRectF(QPointF(opening.right() - corner.width(), opening.top()), corner), 90, -90);
    path.lineTo(opening.right(), opening.top() + height);
    return path;
}

/// Just inside of the area. Between two outlines: a pen would work out the same at twice the cost.
void paintRim(QPainter &painter, const QRectF &area, qreal radius, qreal width,
              const QColor &colour)
{
    QPainterPath path;
    path.addRoundedRect(area, radius, radius);
    path.addRoundedRect(area.adjusted(width, width, -width, -width), radius - width,
                        radius - width);
    painter.fillPath(path, colour);
}

} // namespace

void paintGlass(QPainter &painter, QSizeF size, qreal unit)
{
    const QRectF all(QPointF(0, 0), size);
    const qreal inset = glassBezel * unit;
    const QRectF opening = all.adjusted(inset, inset, -inset, -inset);
    const qreal radius = openingRadius * unit;
    const qreal stretch = opening.width() / (designedWidth - 2 * glassBezel);
    const auto across = [&](qreal x) { return opening.left() + (x - glassBezel) * stretch; };

    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(downwards(all, bezelTone()));
    painter.drawRoundedRect(all, cornerRadius * unit, cornerRadius * unit);
    paintRim(painter, all, cornerRadius * unit, rimWidth * unit, rimColour);

    painter.setBrush(downwards(opening, glassTone()));
    painter.drawRoundedRect(opening, radius, radius);
    QRectF shade = opening;
    shade.setHeight(shadeHeight * unit);
    painter.fillPath(shadePath(opening, radius, shade.height()), downwards(shade, shadeTone()));
    painter.fillPath(glarePath(opening, radius, across(glareTop), across(glareBottom)),
                     downwards(opening, glareTone()));
    paintRim(painter, opening.adjusted(-unit, -unit, unit, unit), radius + unit, unit, lineColour);
}
