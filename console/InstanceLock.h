// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Says which process is the first of its user. The kernel holds it, not the file's contents: it is
/// free as soon as its process is gone, however that ended, and whatever the file says.
class InstanceLock
{
public:
    explicit InstanceLock(const QString &path);
    ~InstanceLock();
    InstanceLock(const InstanceLock &) = delete;
    InstanceLock &operator=(const InstanceLock &) = delete;

    enum class Outcome { Taken, HeldByAnother, Impossible };
    Outcome tryTake();
    /// Why it is impossible, in one sentence without its full stop.
    const QString &trouble() const { return m_trouble; }

    /// Of the process that has it; 0 if none has.
    qint64 owner() const;

private:
    bool open();
    /// @param number of the system's
    void noteError(int number);

    QString m_path;
    QString m_trouble;
    int m_descriptor = -1;
    bool m_isTaken = false;
};
