// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <functional>

/// An icon that is made when it is shown for the first time, if ever.
QIcon lateIcon(std::function<QIcon()> make);
