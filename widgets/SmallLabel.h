// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A label in small print: its text is a little smaller than that of what it stands on, and grows
/// with it.
class SmallLabel : public QLabel
{
    Q_OBJECT

public:
    explicit SmallLabel(QWidget *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followParent();
};
