// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/WeightText.h"

#include <QList>
#include <QString>
#include <optional>

/// What a scale can be told from here.
struct ScaleAbilities
{
    bool power = true;
    bool tare = true;
    bool blinksAtTare = true;
    /// Unit tags that a row may choose; nothing: those of the chosen model.
    std::optional<QList<int>> units;
    /// The row that is the scale's own unit, where it tells; one of unittag::.
    std::optional<int> unitShown;

    bool operator==(const ScaleAbilities &) const = default;
};

/// How the export label's text is to be understood.
struct LeavingForm
{
    ExportForm form = ExportForm::Pounds;
    bool fitsScale = true; ///< the export text is worked out of what the scale reports
};

/// A scale, of whatever kind, as the window uses it. One link is in use at a time; the session
/// knows which. All on the main thread.
class ScaleLink
{
public:
    ScaleLink() = default;
    virtual ~ScaleLink() = default;
    ScaleLink(const ScaleLink &) = delete;
    ScaleLink &operator=(const ScaleLink &) = delete;

    /// To be called in the rhythm of readings. True where it has brought texts that may leave.
    virtual bool takeReading() = 0;
    /// What its texts are made by has been chosen anew: the next takeReading() is to take the
    /// latest report once more. One that is polled does so anyway.
    virtual void readAgain() {}
    /// The scale is silent though it should not be; its next report ends that.
    virtual bool isReadingOpen() const = 0;
    /// To be called often while a reading is open; the answer is that of takeReading().
    virtual bool continueReading() = 0;
    /// What is to be said of a silent scale, and what helps.
    virtual QString silenceText() const = 0;
    /// After a sleep of the machine. False where the scale is not there, or cannot be opened yet.
    virtual bool reopenHandle() = 0;

    virtual ScaleAbilities abilities() const = 0;
    /// @param tag one of unittag::
    virtual void chooseUnit(int tag) = 0;
    virtual void setHeld(bool held) = 0;
    virtual bool isHolding() const = 0;
    // For as long as the button is down
    virtual void pressTare() = 0;
    virtual void releaseTare() = 0;
    /// And is to be switched off with the program.
    virtual bool isOn() const = 0;

    /// Of the latest reading, as the carriers' pages want it; null before the first one.
    virtual WebStrings webTexts() const = 0;
    virtual LeavingForm leavingForm() const = 0;
};
