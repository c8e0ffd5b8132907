// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QComboBox>
#include <QString>

/// A pop-up whose choice is made in its list only: each choice resets the scale's unit, so neither
/// the wheel nor a stray key over the closed pop-up may make one.
class ModelPopUp : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;

    /// While the scale names itself there is no model to be chosen: its name is shown in place of
    /// the choice, in as much room as it takes, where there is that. Empty lets the choice be seen
    /// again.
    void setScaleName(const QString &name);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QString m_scaleName;
};
