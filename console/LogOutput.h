// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class RecordedHidDevices;

/// Where the lines of the log go: a poll has some twenty of them, and nobody reads them as long as
/// all is well. Warnings go to standard error, everything else only to where it is asked for: a
/// file, the record of the traffic, or standard error too where QT_LOGGING_RULES names the
/// program's categories. One object at a time, on the main thread.
class LogOutput
{
public:
    LogOutput();
    ~LogOutput();
    LogOutput(const LogOutput &) = delete;
    LogOutput &operator=(const LogOutput &) = delete;

    /// Replaces a file of that name. False, and the reason in @p trouble, where that is not
    /// possible.
    bool writeTo(const QString &name, QString *trouble);
    /// Puts what is no warning into @p record as remarks. It must outlive the object.
    void annotate(RecordedHidDevices &record);
};
