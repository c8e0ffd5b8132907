// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// The view behind everything in the window. It paints no pixel, so the desktop's own window colour
/// stays.
class FirstView : public QWidget
{
    Q_OBJECT

public:
    explicit FirstView(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
