// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/SmallLabel.h"

#include <QEvent>
#include <QFontInfo>
#include <QPainter>
#include <QStyle>

namespace {

constexpr qreal partOfText = 0.85;

} // namespace

SmallLabel::SmallLabel(QWidget *parent)
    : QLabel(parent)
{
    parent->installEventFilter(this);
    followParent();
}

bool SmallLabel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        followParent();
    return QLabel::eventFilter(watched, event);
}

void SmallLabel::setOpacity(qreal opacity)
{
    m_opacity = opacity;
    update();
}

void SmallLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(alignment()), palette(),
                          isEnabled(), text(), foregroundRole());
}

void SmallLabel::followParent()
{
    QFont small;
    small.setPointSizeF(QFontInfo(parentWidget()->font()).pointSizeF() * partOfText);
    setFont(small);
}
