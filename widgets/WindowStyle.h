// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProxyStyle>

/// The desktop's style, with boxes, dots and margins that grow with a widget's text, and with check
/// boxes, a keyboard focus and quiet words that stand out from any background.
class WindowStyle : public QProxyStyle
{
    Q_OBJECT

public:
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawItemText(QPainter *painter, const QRect &place, int flags, const QPalette &palette,
                      bool enabled, const QString &text, QPalette::ColorRole role) const override;
    QIcon standardIcon(StandardPixmap name, const QStyleOption *option,
                       const QWidget *widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
};
