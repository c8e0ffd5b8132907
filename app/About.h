// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

/// What the program is, and what it is not. Stays open until it is closed.
void showAbout(QWidget &window);
