// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/ModelPopUp.h"

#include <QKeyEvent>
#include <QWheelEvent>

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
