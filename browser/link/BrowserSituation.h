// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The carrier that a host belongs to, or the host itself; empty for a page without a name.
QString carrierName(const QString &host);

/// How it stands between the program and the browser, for the status area.
struct BrowserSituation
{
    enum class Kind {
        NoBrowser,
        WrongVersion, ///< name: the extension's version
        NoCarrierPage,
        PageOpen, ///< name: the host; nothing is being written
        Filling,  ///< name: the host; fields: how many the last reading was written into;
                  ///< otherNumbers: how many of them show another number
        NotAnswering,
        Impossible, ///< name: why, in one clause
    };
    Kind kind = Kind::NoBrowser;
    QString name;
    int fields = 0;
    int otherNumbers = 0;

    /// One short line for the user.
    QString text() const;
};
