// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <functional>

class Settings;

namespace Ui {
class MainWindow;
}

/// "Settled weights only": one state that its box and its menu item both show, and that comes back
/// at the next start. Unlike the other six it needs no scale, leaves the box of options open, and
/// says nothing in the log.
class SettledOption : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the option.
    /// @param apply is called at once with what was stored, then at every change
    SettledOption(const Ui::MainWindow &form, Settings &settings,
                  std::function<void(bool settledOnly)> apply, QObject *parent);
};
