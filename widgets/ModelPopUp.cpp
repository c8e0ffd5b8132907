// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ModelPopUp.h"

#include <QKeyEvent>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QWheelEvent>
#include <algorithm>

namespace {

/// Names are mostly of maker and product; in characters of average width.
constexpr int widestName = 32;

} // namespace

void ModelPopUp::setScaleName(const QString &name)
{
    m_scaleName = name;
    setEnabled(name.isEmpty());
    setToolTip(name);
    setAccessibleDescription(name);
    updateGeometry();
    update();
}

QSize ModelPopUp::sizeHint() const
{
    const QSize ofModels = QComboBox::sizeHint();
    if (m_scaleName.isEmpty())
        return ofModels;
    QStyleOptionComboBox option;
    initStyleOption(&option);
    const QFontMetrics metrics = fontMetrics();
    const int width = std::min(metrics.horizontalAdvance(m_scaleName) + 1,
                               widestName * metrics.averageCharWidth());
    const QSize ofName = style()->sizeFromContents(QStyle::CT_ComboBox, &option,
                                                   QSize(width, metrics.height()), this);
    return {std::max(ofModels.width(), ofName.width()), ofModels.height()};
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
