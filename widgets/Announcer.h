// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// Has screen readers say a line of words, wherever the focus is: a notification is what all of
/// them read out unasked. Nothing of it is to be seen.
class Announcer : public QWidget
{
    Q_OBJECT

public:
    explicit Announcer(QWidget *window);

    /// Also the same words again.
    void say(const QString &words);
};
