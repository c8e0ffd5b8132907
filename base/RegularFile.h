// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <limits>
#include <optional>

class QFile;

// Files that a person names, or may put somewhere: only regular ones, of a sensible size. Reading a
// device or a pipe could wait for ever, or never come to an end.

/// In KiB, of a file that is only going to be replaced.
inline constexpr qint64 anySize = std::numeric_limits<qint64>::max() / 1024;

/// The whole file. Nothing, and the reason in @p trouble, where it is none, cannot be read, or has
/// more than @p most KiB.
std::optional<QByteArray> readRegularFile(const QString &path, qint64 most, QString *trouble);

/// Opens @p file at @p path for writing at its end, without a buffer, and empties it. False, and
/// the reason in @p trouble, where that is not possible; nothing was changed then.
bool openEmptied(QFile &file, const QString &path, QString *trouble);

/// Appends all of @p line to a file opened so. Where that is not possible, closes it without any of
/// it, with the reason in @p trouble.
bool appendWhole(QFile &file, QByteArray line, QString *trouble);

/// Why the file at @p path is not to be opened: it is no regular one, or has more than @p most KiB.
/// Empty if it may be, or if there is none.
QString refusalOf(const QString &path, qint64 most);
