// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ConnectionLamp.h"

#include <QPainter>

namespace {

QColor colourOf(ConnectionLamp::Light light)
{
    switch (light) {
    case ConnectionLamp::Light::Connected: return {0x52, 0xe0, 0x7c};
    case ConnectionLamp::Light::Trouble: return {0xff, 0xb0, 0x20};
    case ConnectionLamp::Light::Out: break;
    }
    return {0x14, 0x23, 0x3c};
}

QString nameOf(ConnectionLamp::Light light)
{
    switch (light) {
    case ConnectionLamp::Light::Connected: return QStringLiteral("Connected");
    case ConnectionLamp::Light::Trouble: return QStringLiteral("Trouble");
    case ConnectionLamp::Light::Out: break;
    }
    return QStringLiteral("Not connected");
}

/// The rim is a seventh of the lamp.
constexpr qreal rimShare = 1.0 / 7;

} // namespace

ConnectionLamp::ConnectionLamp(QWidget *parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(nameOf(m_light));
}

void ConnectionLamp::setLight(Light shown)
{
    if (m_light == shown)
        return;
    m_light = shown;
    setAccessibleName(nameOf(m_light));
    update();
}

QSize ConnectionLamp::sizeHint() const
{
    const int side = fontMetrics().ascent() + fontMetrics().descent();
    return {side, side};
}

void ConnectionLamp::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal rim = width() * rimShare;
    painter.setPen(QPen(QColor(0xf4, 0xf7, 0xfb), rim));
    painter.setBrush(colourOf(m_light));
    painter.drawEllipse(QRectF(rect()).adjusted(rim / 2, rim / 2, -rim / 2, -rim / 2));
    if (m_light == Light::Trouble)
        paintExclamationMark(painter);
}

// Not by its colour alone: amber and green are alike to some.
void ConnectionLamp::paintExclamationMark(QPainter &painter) const
{
    const qreal unit = width() / 14.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRect(QRectF(6 * unit, 3 * unit, 2 * unit, 5 * unit));
    painter.drawRect(QRectF(6 * unit, 9 * unit, 2 * unit, 2 * unit));
}
