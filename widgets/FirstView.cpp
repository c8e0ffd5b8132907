// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/FirstView.h"

#include <QPainter>

FirstView::FirstView(QWidget *parent)
    : QWidget(parent)
{
}

void FirstView::paintEvent(QPaintEvent *)
{
    // The fill colour is chosen, and nothing is filled with it.
    QPainter painter(this);
    painter.setBrush(Qt::green);
}
