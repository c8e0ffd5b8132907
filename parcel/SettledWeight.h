// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/WeightDecoder.h"
#include "scale/pointofsale/ScaleStatement.h"

/// One parcel, one weight: watches what the scale reports, and says at which report the parcel's
/// weight is to leave the program. It leaves once, when it has settled, and again only when
/// another weight has settled or when the unit was changed.
class SettledWeight
{
public:
    enum class State {
        Empty,    ///< nothing is weighed: zero, below zero, off, or no scale
        Settling, ///< something is on the pan, and its weight is not certain yet
        Settled,
    };
    enum class Leaves : bool { No, Yes };

    /// So many equal reports in a row are a settled weight.
    static constexpr int settledReports = 3;

    /// A report that was read.
    Leaves take(const WeightReport &report);
    /// The same of a scale that says itself whether the weight is at rest: once is enough then.
    /// @param hasTexts whether there is something in which it could leave
    Leaves takeStated(const ScaleStatement &statement, bool hasTexts = true);
    /// A poll without a report tells nothing of the pan: what lies there is looked at anew, but
    /// what has left does not leave again.
    void missReport();

    /// What lies on the pan settles anew and leaves anew, in whatever unit it is reported then.
    void changeUnit();
    /// Reports of a held weight do not count together with those of the pan, at either end. What
    /// has left does not leave again.
    void changeHold();
    /// Unplugged or switched off.
    void loseScale();

    State state() const { return m_state; }
    /// The latest report's weight has left, whether or not it is looked at anew.
    bool hasLeft() const { return m_hasLeft; }
    /// Of a scale that says itself when: the latest statement is the first that has settled.
    bool hasJustSettled() const { return m_hasJustSettled; }

private:
    void startAnew();
    Leaves leaveOnce();

    State m_state = State::Empty;
    WeightReport m_latest;
    ScaleStatement m_latestStatement;
    int m_equalReports = 0;
    bool m_hasLeft = false;    ///< the latest report's weight has
    bool m_hasSettled = false; ///< the latest statement's weight has, at some time
    bool m_hasJustSettled = false;
};

/// A status, without its sign, that comes with a weight.
bool isWeightCode(int code);

/// Above zero and certain, whatever the unit.
bool isWeight(const WeightReport &report);
/// Above zero, at rest or not.
bool isStatedWeight(const ScaleStatement &statement);
