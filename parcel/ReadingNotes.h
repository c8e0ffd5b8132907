// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "parcel/LeavingTexts.h"
#include "parcel/SettledWeight.h"

#include <QDateTime>
#include <QStringList>
#include <chrono>

/// What the latest poll brought.
enum class PanReading {
    None, ///< nothing of a weight: no scale, switched off, overload
    Weight,
    Zero,
    BelowZero,
    PanLifted, ///< the panel goes on showing what it showed before
    Missed,    ///< no report
};

PanReading panReading(const WeightReport &report);
PanReading statedPanReading(const ScaleStatement &statement);

/// What can be said of the latest reading beside the number itself.
struct ReadingNotes
{
    bool isConnected = false; ///< and has been read since
    bool isSilent = false;    ///< the scale does not answer
    PanReading pan = PanReading::None;
    SettledWeight::State state = SettledWeight::State::Empty;
    QDateTime settledSince;          ///< of a settled weight
    int parcel = 0;                  ///< the number of settled weights up to this one
    std::chrono::milliseconds age{}; ///< since the pan was weighed, other than for a held weight

    bool isConfirmed = true; ///< else it may be of the weighing before

    bool isMarkedOld = false; ///< of before a sleep of the machine

    bool settledOnly = false;
    LeavingSituation leaving;
    bool hasLeft = false;
    QStringList places;  ///< to which the weight on the pan has gone
    bool canTare = true; ///< from here; else with the scale's own key

    bool isSettled() const { return isConnected && state == SettledWeight::State::Settled; }
    /// Older than a second, or of before a sleep, and thus worth a word.
    bool isOld() const;
    /// What is to be done about the reading; empty where it is as it should be.
    QString advice() const;

    /// Whether the reading is settled, how old it is, what to do about it. One line, may be empty.
    QString standing() const;
    /// What clipboard and fields get. One line, empty where the panel says it already.
    QString leaves() const;
    /// What stands before the export value.
    QString exportCaption() const;

    bool operator==(const ReadingNotes &) const = default;
};

/// "5 s", "3 min", "2 h".
QString durationWords(std::chrono::milliseconds time);
