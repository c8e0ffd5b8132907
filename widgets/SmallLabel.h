// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A label in small print: its text is a little smaller than that of what it stands on, and grows
/// with it. For one line of plain text, without a frame.
class SmallLabel : public QLabel
{
    Q_OBJECT

public:
    explicit SmallLabel(QWidget *parent = nullptr);

    /// Of its text, on top of its colour's own; from 0 to 1, which it is at first. The toolkit's
    /// effect for it draws each label twice.
    void setOpacity(qreal opacity);
    qreal opacity() const { return m_opacity; }

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void followParent();

    qreal m_opacity = 1;
};
