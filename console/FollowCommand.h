// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "console/CommandLine.h"
#include "console/FollowerLine.h"

#include <QDeadlineTimer>

class LocalCall;

/// --follow: a line on standard output for each reading that is news, from the window that runs or
/// else from an unseen one, until whoever reads the lines goes.
class FollowCommand
{
public:
    /// @param socketPath of the one that has the scale; empty where there is no place for one
    explicit FollowCommand(const QString &socketPath);

    /// The exit status.
    int run(const CommandLine &line);

private:
    /// Until it hangs up, or the reader has gone.
    void follow(LocalCall &source);
    void startSource();
    void take(const QByteArray &line);
    void refuse();
    /// Where there has been nobody to follow, or he has said nothing, for too long.
    void tellOfHang();
    void tell(const QString &words, const QByteArray &json);
    void write(const QByteArray &line);
    /// The reader may go while there is nothing to write.
    void lookForReader();
    void endWith(int error);

    QString m_socketPath;
    CommandLine m_line;
    FollowedCount m_count;
    ParcelFilter m_parcels;
    FollowedWords m_words;
    bool m_isSourceThere = false; ///< though it may take nobody in
    QDeadlineTimer m_hang;
    QDeadlineTimer m_nextStart{0};
    bool m_isOver = false;
    int m_status = 0;
};
