// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/CommandByte.h"
#include "scale/HidDevices.h"
#include "scale/HidLibrary.h"
#include "scale/WeightDecoder.h"

#include <QObject>
#include <QString>
#include <memory>

class ScaleDelegate;

/// The scale link: finds and opens the scale, commands it, reads and decodes its reports and turns
/// them into the texts that leave the program. Lives on the main thread. It holds no pointer to
/// the interface; whenever it needs it, it asks the shared application for its delegate.
class HIDManager : public QObject
{
    Q_OBJECT

public:
    HIDManager();

    /// Starts to watch for HID devices; to be called once.
    void get_device_handle();

    /// One exchange with the scale: a poll out, one report in, everything that follows from it.
    /// Waits for the report as long as it takes, and holds the thread meanwhile.
    void get_device_rawdata();

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

    int currentScale() const { return state.currentScale; }
    void setCurrentScale(int type) { state.currentScale = type; }
    int currentUnit() const { return state.currentUnit; }
    void setCurrentUnit(int unit) { state.currentUnit = unit; }
    int unitnumber() const { return state.unitnumber; }
    void setUnitnumber(int number) { state.unitnumber = number; }
    int unitindex() const { return state.unitindex; }
    void setUnitindex(int index) { state.unitindex = index; }
    /// Decimal-point selector of the digit layouts: the unit tag that was chosen last.
    int dotunit() const { return decimalPointUnit; }
    void setDotunit(int unit) { decimalPointUnit = unit; }
    CommandByte scaleCommand() const { return command; }
    void setScaleCommand(CommandByte byte) { command = byte; }
    /// The scale's display is on.
    bool currentStatue() const { return state.currentStatue; }
    void setCurrentStatue(bool on) { state.currentStatue = on; }
    bool TurnON() const { return turnedOn; }
    void setTurnON(bool on) { turnedOn = on; }
    bool TurnOff() const { return turnedOff; }
    void setTurnOff(bool off) { turnedOff = off; }
    /// Pounds with whole ounces, no fraction.
    bool lbOZlast() const { return wholeOunces; }
    void setLbOZlast(bool whole) { wholeOunces = whole; }
    /// Round the export text up to a whole unit.
    bool SetRound() const { return roundUp; }
    void setSetRound(bool round) { roundUp = round; }
    bool OverloadFlag() const { return state.OverloadFlag; }
    void setOverloadFlag(bool overload) { state.OverloadFlag = overload; }
    bool setNegative() const { return negativeReserved; }
    void setSetNegative(bool negative) { negativeReserved = negative; }
    int webPageUnit() const { return reservedWebUnit; }
    void setWebPageUnit(int unit) { reservedWebUnit = unit; }
    float webPageData() const { return reservedWebWeight; }
    void setWebPageData(float weight) { reservedWebWeight = weight; }

    // Null before the first reading; the latest reading's afterwards, also when the scale is gone.
    const QString &sWebDataLB() const { return webPounds; }
    void setSWebDataLB(const QString &text) { webPounds = text; }
    const QString &sWebDataOZ() const { return webOunces; }
    void setSWebDataOZ(const QString &text) { webOunces = text; }
    const QString &sWebDataBasic() const { return webGrams; }
    void setSWebDataBasic(const QString &text) { webGrams = text; }
    /// The export label's text of the reading before.
    const QString &sWebDataLBOnly() const { return webPreviousExport; }
    void setSWebDataLBOnly(const QString &text) { webPreviousExport = text; }

private:
    enum class Trace { Io, System, SystemArrow };

    static ScaleDelegate *delegate();

    void DeviceAdded(const HidDeviceInfo &device);
    void DeviceRemoved(const HidDeviceInfo &device);
    void handleMatchingDevice();
    void hid_device_removal_callback();
    void reportOpenFailure(const HidDeviceInfo &device);
    QString troubleWith(const HidDeviceInfo &device) const;

    int sendFeatureReport(const FeatureReport &report);
    void sendCommand(Trace trace);

    WeightReport readReport();
    float exportedWeight(const WeightReport &report, float grams);
    void perform(const ReadingEffect &effect);
    void exportReading(const WeightReport &report, const DecodedReport &decoded, Capacity capacity);

    HidDevices &devices;
    std::unique_ptr<DeviceEvents> watcher;
    HidLibrary library;
    std::shared_ptr<HidHandle> handle; ///< stays set when the scale is gone; null if never opened
    CommandByte command = 0;
    ReadingState state;
    int decimalPointUnit = 0;
    bool turnedOn = false;
    bool turnedOff = false;
    bool wholeOunces = false;
    bool roundUp = false;
    bool negativeReserved = false;
    int reservedWebUnit = 0;
    float reservedWebWeight = 0;
    QString webPounds;
    QString webOunces;
    QString webGrams;
    QString webPreviousExport;
};
