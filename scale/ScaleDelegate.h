// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QtGlobal>

class HidDevices;
class ScaleLink;
struct ScaleReading;
struct WeightReport;

/// Of the wait for one report. One that lacks a byte of the weight has failed.
enum class ReadOutcome : bool { Failed, Read };

/// What the scale link asks of the interface. The link knows no more of it than this, so it works
/// and is tested without a window.
class ScaleDelegate
{
public:
    virtual ~ScaleDelegate() = default;

    /// True: a scale was attached. False: a HID device, any of them, was removed.
    virtual void setStatusString(bool connected) = 0;
    virtual void setIsDeviceAlive(bool alive) = 0;
    /// Why the attached scale could not be opened and what helps; empty when there is no trouble.
    virtual void setConnectionTrouble(const QString &trouble) = 0;
    /// Why scales that come and go will not be noticed, and what helps.
    virtual void showWatchTrouble(const QString &trouble) = 0;

    virtual void clearAll() = 0;
    virtual void Draw5Digit(qint64 nValue) = 0;
    virtual void Draw5DigitOverload() = 0;
    /// @param unit one of displaycode::; others leave the panel as it is
    virtual void DisplayUnit(int unit) = 0;
    virtual void shownegativeSign(bool negative) = 0;
    virtual void setUnitCaptionHidden(bool hidden) = 0;

    /// From here on the scale is at the end of @p link; its name is what it says of itself. The
    /// first link, which is in use from the start, is named by the chosen model.
    virtual void useLink(ScaleLink &link, const QString &name);
    /// A reading of a scale that tells number and unit itself: it is to be drawn, and kept in mind,
    /// before its texts leave.
    virtual void takeReading(const ScaleReading &reading);

    /// What this reading is made of, once it is drawn and before its texts leave.
    virtual void takeReport(const WeightReport &report, ReadOutcome outcome);

    /// The text of the export label, which is also what the clipboard receives.
    virtual QString exportLabelText() const = 0;
    virtual void setExportLabelText(const QString &text) = 0;
    /// Replaces the clipboard's contents with one plain text.
    virtual void copyToClipboard(const QString &text) = 0;

    /// Empty until the user chooses a model.
    virtual QString selectedModelName() const = 0;
    /// Tag of the unit that the user chose last, one of unittag::.
    virtual int selectedRadioButtonIndex() const = 0;
    /// Whether every reading is to be copied to the clipboard.
    virtual bool SetClip() const = 0;
};

/// The application as the scale link sees it: the place where the delegate and the devices are
/// found.
class ScaleApplication
{
public:
    ScaleApplication();
    virtual ~ScaleApplication();
    ScaleApplication(const ScaleApplication &) = delete;
    ScaleApplication &operator=(const ScaleApplication &) = delete;

    /// The one application of the process. It must exist before any scale link.
    static ScaleApplication *sharedApplication();
    virtual ScaleDelegate *delegate() const = 0;
    /// Outlives every scale link.
    virtual HidDevices &devices() = 0;
};
