// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/InstalledPath.h"

#include <QCoreApplication>
#include <QDir>

QString installedPath(const char *folder, const QString &programFolder)
{
    return QDir::cleanPath(QDir(programFolder).absoluteFilePath(QString::fromUtf8(folder)));
}

QString installedPath(const char *folder)
{
    return installedPath(folder, QCoreApplication::applicationDirPath());
}
