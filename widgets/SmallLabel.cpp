// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/SmallLabel.h"

#include <QEvent>
#include <QFontInfo>

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

void SmallLabel::followParent()
{
    QFont small;
    small.setPointSizeF(QFontInfo(parentWidget()->font()).pointSizeF() * partOfText);
    setFont(small);
}
