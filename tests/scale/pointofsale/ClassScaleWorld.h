// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/ClassScaleDescriptors.h"
#include "scale/HIDManager.h"
#include "scale/pointofsale/PointOfSaleLink.h"
#include "scale/pointofsale/ScaleChoice.h"
#include "scale/pointofsale/ScaleReading.h"
#include "tests/support/ClassScaleDevices.h"
#include "tests/support/LinkedScale.h"

inline const fakeudev::Device firstDevice{"hidraw5", 0x1234, 0x0001};

/// Report 3 of the class: at rest, in tenths of an ounce.
inline ClassScaleDevices::Report stable(std::uint8_t weight)
{
    return {3, 4, 11, 0xFF, weight, 0};
}

/// The interface with both links behind it.
class ClassScaleInterface : public RecordingDelegate
{
public:
    HidDevices &devices() override { return machine; }

    void useLink(ScaleLink &link, const QString &itsName) override
    {
        inUse = &link;
        name = itsName;
        calls.append(QStringLiteral("useLink"));
    }

    void takeReading(const ScaleReading &reading) override { readings.push_back(reading); }

    ClassScaleDevices machine;
    ScaleLink *inUse = nullptr;
    QString name;
    std::vector<ScaleReading> readings;
};

struct ClassScaleWorld
{
    ClassScaleWorld()
    {
        FakeHidapi::reset();
        fakeudev::reset();
        describe("/dev/hidraw5", "One Scale");
        describe("/dev/hidraw6", "Other Scale");
        link.get_device_handle();
        turn();
    }

    static void turn() { LinkedScale::turn(); }

    void describe(const char *node, const char *name)
    {
        ClassScaleDevices::Scale &scale = interface.machine.scales[QString::fromLatin1(node)];
        scale.descriptor = QByteArray(reinterpret_cast<const char *>(classScaleDescriptor.data()),
                                      static_cast<qsizetype>(classScaleDescriptor.size()));
        scale.name = QString::fromLatin1(name);
    }

    ClassScaleDevices::Scale &first() { return interface.machine.scales["/dev/hidraw5"]; }
    ClassScaleDevices::Scale &second() { return interface.machine.scales["/dev/hidraw6"]; }

    void plugFirst()
    {
        fakeudev::plug(firstDevice);
        turn();
    }

    /// Past the report that may be of another time.
    void plugAndBegin()
    {
        plugFirst();
        first().reports.push_back(stable(99));
        other.takeReading();
        interface.calls.clear();
    }

    unsigned lastDigits() const { return interface.readings.back().statement.number.digits; }

    bool isOtherInUse() const { return interface.inUse == &other; }

    LogCapture log;
    ClassScaleInterface interface;
    HIDManager link;
    PointOfSaleLink other{[this] { return link.SetRound(); }};
    ScaleChoice choice{link, other, nullptr};
};
