// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/CommandByte.h"
#include "scale/HidDevices.h"
#include "scale/HidLibrary.h"
#include "scale/ScaleDelegate.h"
#include "scale/ScaleLink.h"
#include "scale/WeightDecoder.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <chrono>
#include <memory>
#include <optional>

/// What a click on a unit row sets.
struct UnitChoice
{
    int unitnumber = 0;
    int unitindex = 0;
    int currentUnit = 0;
    int dotunit = 0;
    bool lbOZlast = false;
};

/// A reading of HIDManager whose report is late.
struct OpenReading
{
    QElapsedTimer sincePoll;
    int unansweredPolls = 1;
    UnitChoice before;                     ///< when the reading began
    ExportForm form = ExportForm::Pounds;  ///< when the reading began
    bool isCommanded = false;              ///< since the latest poll
    bool isUnitCommanded = false;          ///< since the reading began
    std::optional<UnitChoice> chosen = {}; ///< since the reading began
};

/// The scale link: finds and opens the scale, commands it, reads and decodes its reports and turns
/// them into the texts that leave the program. Lives on the main thread. It holds no pointer to
/// the interface; whenever it needs it, it asks the shared application for its delegate.
class HIDManager : public QObject, public ScaleLink
{
    Q_OBJECT

public:
    HIDManager();

    /// Starts to watch for HID devices; to be called once.
    void get_device_handle();

    /// How long a reading holds the thread, and how often a silent scale is polled anew.
    static constexpr std::chrono::milliseconds answerPatience{2000};

    /// One exchange with the scale: a poll out, one report in, everything that follows from it.
    /// Holds the thread until the report comes, and for no longer than that patience. A reading
    /// whose report has not come by then stays open.
    void get_device_rawdata();
    bool isReadingOpen() const override { return m_open.has_value(); }
    /// To be called often while a reading is open. Takes the report if it has come, and ends the
    /// reading as if it had come in time. Does not wait.
    bool continueReading() override;
    bool takeReading() override;
    QString silenceText() const override;

    // Each sends one command report at once; a failure is only traced.
    void set_device_ON();
    void set_device_OFF();
    void set_device_HOLD();
    void set_device_HOLDOFF();
    void set_device_ON_TARE();
    void set_device_OFF_TARE();
    /// @param unit one of unitindex::; any other leaves the unit code as it is
    void set_Unit(int unit);

    /// Makes the web strings of a weight in grams.
    void changewebData(float grams);

    /// Opens the first scale there is, over a handle that may be open already.
    void openHandle();
    void closeHandle();
    /// Where the scale that was opened last, or refused, is present still, opens it anew: what had
    /// queued up for the old handle is gone. True also where only permission is missing, which the
    /// polls wait for. False where it cannot be opened; and nothing done where it is not there, or
    /// another one is first.
    bool reopenHandle() override;

    // What the window asks of any scale, in the terms of this one
    ScaleAbilities abilities() const override { return {}; }
    void chooseUnit(int tag) override;
    void setHeld(bool held) override;
    bool isHolding() const override { return (m_scaleCommand & holdReleasedBit) == 0; }
    void pressTare() override { set_device_ON_TARE(); }
    void releaseTare() override { set_device_OFF_TARE(); }
    bool isOn() const override { return currentStatue(); }
    WebStrings webTexts() const override;
    LeavingForm leavingForm() const override;

    /// Of whom this link has its news, for those who look after other devices.
    DeviceEvents &deviceEvents() const { return *m_watcher; }
    /// While another link is in use, nothing of this one reaches the interface.
    void standBack(bool back) { m_isStandingBack = back; }

    int currentScale() const { return m_state.currentScale; }
    void setCurrentScale(int type) { m_state.currentScale = type; }
    int currentUnit() const { return m_state.currentUnit; }
    void setCurrentUnit(int unit) { m_state.currentUnit = unit; }
    int unitnumber() const { return m_state.unitnumber; }
    void setUnitnumber(int number) { m_state.unitnumber = number; }
    int unitindex() const { return m_state.unitindex; }
    void setUnitindex(int index) { m_state.unitindex = index; }
    /// Decimal-point selector of the digit layouts: the unit tag that was chosen last.
    int dotunit() const { return m_dotunit; }
    void setDotunit(int unit) { m_dotunit = unit; }
    CommandByte scaleCommand() const { return m_scaleCommand; }
    void setScaleCommand(CommandByte byte) { m_scaleCommand = byte; }
    /// The scale's display is on.
    bool currentStatue() const { return m_state.currentStatue; }
    void setCurrentStatue(bool on) { m_state.currentStatue = on; }
    bool TurnON() const { return m_TurnON; }
    void setTurnON(bool on) { m_TurnON = on; }
    bool TurnOff() const { return m_TurnOff; }
    void setTurnOff(bool off) { m_TurnOff = off; }
    /// Pounds with whole ounces, no fraction.
    bool lbOZlast() const { return m_lbOZlast; }
    void setLbOZlast(bool whole) { m_lbOZlast = whole; }
    /// Round the export text up to a whole unit.
    bool SetRound() const { return m_SetRound; }
    void setSetRound(bool round) { m_SetRound = round; }
    bool OverloadFlag() const { return m_state.OverloadFlag; }
    void setOverloadFlag(bool overload) { m_state.OverloadFlag = overload; }
    bool setNegative() const { return m_setNegative; }
    void setSetNegative(bool negative) { m_setNegative = negative; }
    int webPageUnit() const { return m_webPageUnit; }
    void setWebPageUnit(int unit) { m_webPageUnit = unit; }
    float webPageData() const { return m_webPageData; }
    void setWebPageData(float weight) { m_webPageData = weight; }

    // Null before the first reading; the latest reading's afterwards, also when the scale is gone.
    const QString &sWebDataLB() const { return m_sWebDataLB; }
    void setSWebDataLB(const QString &text) { m_sWebDataLB = text; }
    const QString &sWebDataOZ() const { return m_sWebDataOZ; }
    void setSWebDataOZ(const QString &text) { m_sWebDataOZ = text; }
    const QString &sWebDataBasic() const { return m_sWebDataBasic; }
    void setSWebDataBasic(const QString &text) { m_sWebDataBasic = text; }
    /// The export label's text of the reading before.
    const QString &sWebDataLBOnly() const { return m_sWebDataLBOnly; }
    void setSWebDataLBOnly(const QString &text) { m_sWebDataLBOnly = text; }

signals:
    /// A scale of this link's is there though it stands back. It is opened next.
    void scaleCame();

private:
    enum class Trace { Io, System, SystemArrow };

    ScaleDelegate *delegate() const;

    void DeviceAdded(const HidDeviceInfo &device);
    void DeviceChanged(const HidDeviceInfo &device);
    void DeviceRemoved(const HidDeviceInfo &device);
    void handleMatchingDevice();
    /// Where a seat changes hands, logind gives the node to another user without any event, and
    /// leaves the handles open. Two programs that poll one scale get each other's reports: who may
    /// not open the node any longer lets go of it, and opens it again once that is permitted.
    void followPermission();
    void forgetRefusal();
    void hid_device_removal_callback();
    void reportOpenFailure(const HidDeviceInfo &device);
    QString troubleWith(const HidDeviceInfo &device) const;

    int sendFeatureReport(const FeatureReport &report);
    void sendCommand(Trace trace);

    struct Input
    {
        WeightReport report;
        ReadOutcome outcome = ReadOutcome::Failed;
    };
    /// Nothing where no report comes in that time.
    std::optional<Input> readReport(std::chrono::milliseconds patience);
    void sendPoll();
    void pollAnew();
    CommandByte nextCommand(const OpenReading &open, CommandByte commanded) const;
    void takeInput(const Input &input, ExportForm form);
    void openReading();
    UnitChoice units() const;
    void setUnits(const UnitChoice &units);
    ExportForm chosenForm() const;
    void dropOwedReports();
    /// Its answers may come over another handle to the same scale.
    void giveReadingUp();
    float exportedWeight(const WeightReport &report, float grams);
    void perform(const ReadingEffect &effect);
    void exportReading(const WeightReport &report, const DecodedReport &decoded, Capacity capacity,
                       ExportForm form);

    HidDevices &m_devices;
    std::unique_ptr<DeviceEvents> m_watcher;
    HidLibrary m_library;
    std::shared_ptr<HidHandle> m_handle; ///< stays set when the scale is gone; null if never opened
    QString m_refusedPath;      ///< of the attached scale, while it cannot be opened; or empty
    HidDeviceInfo m_device;     ///< that was opened last, or could not be opened
    bool m_isForbidden = false; ///< to open it
    bool m_isStandingBack = false;
    std::optional<OpenReading> m_open;
    int m_owedReports = 0; ///< answers that may still come to polls of readings that are over
    CommandByte m_scaleCommand = 0;
    ReadingState m_state;
    int m_dotunit = 0;
    bool m_TurnON = false;
    bool m_TurnOff = false;
    bool m_lbOZlast = false;
    bool m_SetRound = false;
    bool m_setNegative = false;
    int m_webPageUnit = 0;
    float m_webPageData = 0;
    QString m_sWebDataLB;
    QString m_sWebDataOZ;
    QString m_sWebDataBasic;
    QString m_sWebDataLBOnly;
};
