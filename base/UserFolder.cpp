// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/UserFolder.h"

#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QString logInAnew = QStringLiteral("Log in anew: the session makes the folder.");

UserFolder unusable(const QString &trouble, const QString &cure)
{
    return {.path = {}, .trouble = trouble, .cure = cure};
}

} // namespace

UserFolder UserFolder::at(const QString &path)
{
    constexpr mode_t othersMayWrite = S_IWGRP | S_IWOTH;
    struct stat facts = {};
    if (stat(QFile::encodeName(path).constData(), &facts) != 0 || !S_ISDIR(facts.st_mode))
        return unusable(QStringLiteral("the runtime folder %1 is not there").arg(path), logInAnew);
    if (facts.st_uid != geteuid())
        return unusable(
            QStringLiteral("the runtime folder %1 belongs to another user").arg(path),
            QStringLiteral("Start the program as the user who has logged in, without sudo or su."));
    if ((facts.st_mode & othersMayWrite) != 0)
        return openToOthers(
            path, QStringLiteral("others may write into the runtime folder %1").arg(path));
    return {.path = path, .trouble = {}, .cure = {}};
}

UserFolder UserFolder::openToOthers(const QString &path, const QString &trouble)
{
    return unusable(trouble,
                    QStringLiteral("Run: chmod 700 %1. Then start the program again.").arg(path));
}

UserFolder UserFolder::ofSession()
{
    const QString path = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (path.isEmpty())
        return unusable(QStringLiteral("there is no runtime folder: XDG_RUNTIME_DIR is not set"),
                        logInAnew);
    return at(path);
}
