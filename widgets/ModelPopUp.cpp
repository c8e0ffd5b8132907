// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ModelPopUp.h"

#include <QKeyEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>

void ModelPopUp::setScaleName(const QString &name)
{
    m_scaleName = name;
    setEnabled(name.isEmpty());
    setToolTip(name);
    setAccessibleDescription(name);
    update();
}

void ModelPopUp::paintEvent(QPaintEvent *event)
{
    if (m_scaleName.isEmpty()) {
        QComboBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentIcon = {};
    const QRect room =
        style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    option.currentText = fontMetrics().elidedText(m_scaleName, Qt::ElideRight, room.width());
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

void ModelPopUp::wheelEvent(QWheelEvent *event)
{
    event->ignore();
}

void ModelPopUp::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F4: showPopup(); break;
    default: event->ignore(); break;
    }
}
