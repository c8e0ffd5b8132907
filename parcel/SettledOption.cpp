// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/SettledOption.h"

#include "settings/Settings.h"
#include "ui_MainWindow.h"

#include <utility>

SettledOption::SettledOption(const Ui::MainWindow &form, Settings &settings,
                             std::function<void(bool settledOnly)> apply, QObject *parent)
    : QObject(parent)
{
    const bool stored = settings.settledOnly();
    form.checkSettledOnly->setChecked(stored);
    form.mnuSettledOnly->setChecked(stored);
    apply(stored);
    connect(form.checkSettledOnly, &QAbstractButton::toggled, form.mnuSettledOnly,
            &QAction::setChecked);
    connect(form.mnuSettledOnly, &QAction::toggled, this,
            [&form, &settings, act = std::move(apply)](bool on) {
                form.checkSettledOnly->setChecked(on);
                settings.setSettledOnly(on);
                act(on);
            });
}
