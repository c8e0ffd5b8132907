// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Absolute and without detours. @param folder one of base/InstalledFolders.h; @param programFolder
/// that of the running program.
QString installedPath(const char *folder, const QString &programFolder);
/// As seen from the running program, which has to be a QCoreApplication.
QString installedPath(const char *folder);
