// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A label in small print: its text is a little smaller than that of what it stands on, and grows
/// with it. For one line of plain text, without a frame. Its font is not smaller, its drawing is: a
/// font of another size would be looked for on the machine, for a fortieth of the program's start.
class SmallLabel : public QLabel
{
    Q_OBJECT

public:
    using QLabel::QLabel;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Of its text, on top of its colour's own; from 0 to 1, which it is at first. The toolkit's
    /// effect for it draws each label twice.
    void setOpacity(qreal opacity);
    qreal opacity() const { return m_opacity; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    qreal m_opacity = 1;
};
