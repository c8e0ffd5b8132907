// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// A folder for sockets and locks, which must be the user's own and closed to others.
struct UserFolder
{
    QString path;    ///< empty where it cannot be used
    QString trouble; ///< why, in one clause without a full stop; empty where it can
    QString cure;    ///< in one sentence

    static UserFolder at(const QString &path);
    /// One that others may get into, and why.
    static UserFolder openToOthers(const QString &path, const QString &trouble);
    /// The session's runtime folder, XDG_RUNTIME_DIR.
    static UserFolder ofSession();
};
