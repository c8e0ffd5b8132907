// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/WindowStyle.h"

#include "widgets/LateIcon.h"

#include <QFontInfo>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>
#include <cstdlib>

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

/// Points; what the styles' own sizes are made for.
constexpr qreal usualTextSize = 10;

qreal textScale(const QWidget *widget)
{
    return std::max(1.0, QFontInfo(widget->font()).pointSizeF() / usualTextSize);
}

void drawFocus(QPainter *painter, const QRect &place, const QColor &colour)
{
    constexpr int width = 2;
    painter->save();
    painter->setPen(QPen(colour, width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(place.adjusted(1, 1, -1, -1));
    painter->restore();
}

/// In the colours of the widget's palette, whatever the desktop's are: those would be lost on the
/// units' blue, and disabled dots would look like the others.
void drawRadioIndicator(const QStyleOption &option, QPainter &painter)
{
    constexpr qreal dotPartOfSize = 0.4;
    const auto group =
        option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
    const qreal size = std::min(option.rect.width(), option.rect.height()) - 2;
    const QPointF middle = QRectF(option.rect).center();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(option.palette.color(group, QPalette::Base));
    painter.drawEllipse(middle, size / 2, size / 2);
    if (option.state.testFlag(QStyle::State_On)) {
        painter.setBrush(option.palette.color(group, QPalette::Text));
        painter.drawEllipse(middle, size * dotPartOfSize / 2, size * dotPartOfSize / 2);
    }
    painter.restore();
}

/// Of 255; a quiet word that is nearer to the window's own lightness is not to be seen.
constexpr int leastDistance = 40;

/// As far from the one as from the other.
QColor between(const QColor &one, const QColor &other)
{
    return QColor((one.red() + other.red()) / 2, (one.green() + other.green()) / 2,
                  (one.blue() + other.blue()) / 2);
}

/// Where the toolkit works out Plasma's colours by itself, it darkens those of disabled words and
/// has black ones for placeholders, in a dark scheme too.
QPalette withQuietWordsSeen(QPalette palette, bool enabled, QPalette::ColorRole role)
{
    const auto group = enabled ? palette.currentColorGroup() : QPalette::Disabled;
    const auto loud = role == QPalette::PlaceholderText ? QPalette::WindowText : role;
    const QColor ink = palette.color(group, role);
    const QColor ground = palette.color(group, QPalette::Window);
    const int distance = std::abs(ink.lightness() - ground.lightness()) * ink.alpha() / 255;
    if (distance < leastDistance)
        palette.setColor(group, role, between(palette.color(QPalette::Active, loud), ground));
    return palette;
}

/// Pixels, with text of the usual size.
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

void WindowStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    if (element != CE_PushButtonLabel || !button ||
        !button->features.testFlag(QStyleOptionButton::Flat)) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    // It stands on the window, not on a button, and some desktops have dark buttons in light
    // windows.
    QStyleOptionButton onWindow = *button;
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        onWindow.palette.setBrush(group, QPalette::ButtonText,
                                  button->palette.brush(group, QPalette::WindowText));
    QProxyStyle::drawControl(element, &onWindow, painter, widget);
}

void WindowStyle::drawItemText(QPainter *painter, const QRect &place, int flags,
                               const QPalette &palette, bool enabled, const QString &text,
                               QPalette::ColorRole role) const
{
    const bool isQuiet = !enabled || role == QPalette::PlaceholderText;
    QProxyStyle::drawItemText(
        painter, place, flags,
        isQuiet && role != QPalette::NoRole ? withQuietWordsSeen(palette, enabled, role) : palette,
        enabled, text, role);
}

QIcon WindowStyle::standardIcon(StandardPixmap name, const QStyleOption *option,
                                const QWidget *widget) const
{
    // Every menu bar takes it with it, for a window that is too narrow for its menus. Loading it
    // loads the plugins of all image formats.
    if (name == SP_ToolBarHorizontalExtensionButton)
        return lateIcon([this] {
            return QProxyStyle::standardIcon(SP_ToolBarHorizontalExtensionButton, nullptr, nullptr);
        });
    return QProxyStyle::standardIcon(name, option, widget);
}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                QPainter *painter, const QWidget *widget) const
{
    if (element == PE_FrameFocusRect) {
        drawFocus(painter, option->rect, option->palette.color(QPalette::WindowText));
        return;
    }
    // The toolkit's own style has them right.
    if (element == PE_IndicatorRadioButton && baseStyle()->name() != QLatin1String("fusion")) {
        drawRadioIndicator(*option, *painter);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element != PE_IndicatorCheckBox)
        return;
    QColor outline = option->palette.color(QPalette::WindowText);
    outline.setAlphaF(outlineOpacity);
    painter->setPen(outline);
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                     QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox && option->state.testFlag(State_HasFocus) &&
        option->state.testFlag(State_KeyboardFocusChange))
        drawFocus(painter, option->rect.adjusted(1, 1, -1, -1),
                  option->palette.color(QPalette::ButtonText));
}
