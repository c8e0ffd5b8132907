// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/WindowStyle.h"

#include <QApplication>
#include <QFontInfo>
#include <QPainter>
#include <QStyleOption>

namespace {

/// Three times as bright or as dark as the window behind it, at least.
constexpr float outlineOpacity = 0.6F;

bool growsWithText(QStyle::PixelMetric metric)
{
    switch (metric) {
    case QStyle::PM_ButtonMargin:
    case QStyle::PM_CheckBoxLabelSpacing:
    case QStyle::PM_ExclusiveIndicatorHeight:
    case QStyle::PM_ExclusiveIndicatorWidth:
    case QStyle::PM_IndicatorHeight:
    case QStyle::PM_IndicatorWidth:
    case QStyle::PM_RadioButtonLabelSpacing: return true;
    default: return false;
    }
}

/// How much larger than the desktop's own text a widget's is.
qreal textScale(const QWidget *widget)
{
    return QFontInfo(widget->font()).pointSizeF() / QFontInfo(QApplication::font()).pointSizeF();
}

/// Pixels, with text of the desktop's size.
constexpr int shortestButton = 80;

} // namespace

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                             const QWidget *widget) const
{
    const int size = QProxyStyle::pixelMetric(metric, option, widget);
    if (!widget || !growsWithText(metric))
        return size;
    return qRound(size * textScale(widget));
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                    const QSize &contents, const QWidget *widget) const
{
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (type != CT_PushButton || !button || !widget ||
        button->features.testFlag(QStyleOptionButton::Flat))
        return size;
    return size.expandedTo(QSize(qRound(shortestButton * textScale(widget)), 0));
}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox)
        return;
    QColor outline = option->palette.color(QPalette::WindowText);
    outline.setAlphaF(outlineOpacity);
    painter->setPen(outline);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
}
