// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ReadingReport.h"

#include <QByteArray>
#include <QJsonObject>
#include <optional>

// A reading on its way from the process that has the scale to those that follow it.

/// With its number, and the time of day.
QByteArray followerLine(const ReadingReport &report, int number);

/// Numbers the readings that are news.
class FollowerLines
{
public:
    /// Nothing if it says what the one before said; its age does not count.
    std::optional<QByteArray> next(const ReadingReport &report);
    /// Whether it is news or not, for those who wait for a sign of life.
    QByteArray again(const ReadingReport &report);
    /// For one that has just come: under the number that the others have had last.
    QByteArray present(const ReadingReport &report) const;

private:
    ReadingReport m_latest;
    int m_number = 0;
};

/// Numbers them anew for one that hears now this process and now that one: each line that it has
/// not been sent leaves a gap, a new process leaves none.
class FollowedCount
{
public:
    void beginConnection() { m_ofSource = 0; }
    int next(const QJsonObject &line);
    /// Of a line of its own.
    int next() { return ++m_own; }

private:
    int m_ofSource = 0;
    int m_own = 0;
};

/// What is said of each in words.
class FollowedWords
{
public:
    /// One that says what the one before said is a sign of life, and tells the age.
    QString next(const ReadingReport &report);

private:
    ReadingReport m_latest;
};

/// One line for each parcel.
class ParcelFilter
{
public:
    /// Another process may have settled the same parcel, and numbers its own. So does the same one
    /// after a unit was chosen, and there, too, it is one parcel.
    void beginConnection() { m_isNewConnection = true; }
    /// Whether it is the first line of a parcel that has settled.
    bool takes(const ReadingReport &report);

private:
    bool isLatest(const ReadingReport &report) const;
    bool tellsOfAnother(const ReadingReport &report) const;

    ReadingReport m_latest; ///< that was taken
    bool m_isOnPan = false; ///< since then nothing has told of another load, nor of none
    bool m_isNewConnection = false;
};
