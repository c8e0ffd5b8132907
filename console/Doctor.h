// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

struct DoctorFacts;

/// One thing that the program needs, and how it stands.
struct Finding
{
    enum class Kind {
        Good,
        Trouble,
        Note, ///< cannot be told just now
    };
    Kind kind = Kind::Good;
    QString text;
    QString cure; ///< one line; empty unless there is trouble

    bool operator==(const Finding &) const = default;
};

/// In the order in which a person should look at them.
QList<Finding> diagnose(const DoctorFacts &facts);

QString reportText(const QList<Finding> &findings);

/// 1 if there is any trouble.
int exitStatus(const QList<Finding> &findings);
