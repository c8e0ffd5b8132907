// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>

/// For desktops that do not find the installed one, as where the program runs from its sources. Its
/// pictures are read each time they are asked for: a desktop does that once, and they would take
/// 100 KiB. It is never larger than the largest of them, and has no disabled form.
QIcon builtInIcon();
