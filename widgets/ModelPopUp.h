// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>

/// A pop-up whose choice is made in its list only: each choice resets the scale's unit, so neither
/// the wheel nor a stray key over the closed pop-up may make one.
class ModelPopUp : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

protected:
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
};
