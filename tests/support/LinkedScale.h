// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/HIDManager.h"
#include "tests/support/FakeHidapi.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RecordingDelegate.h"
#include "tests/support/ScaleDevice.h"

#include <QCoreApplication>
#include <QLoggingCategory>

/// The real link, watching; what it does is seen from the fake libraries and the recording
/// interface. Everything starts anew with each of these.
struct LinkedScale
{
    enum class Scale { Absent, Present };

    explicit LinkedScale(Scale scale)
    {
        FakeHidapi::reset();
        fakeudev::reset();
        if (scale == Scale::Present)
            fakeudev::place(scaleDevice);
        link.get_device_handle();
        turn();
    }

    /// Lets the event loop deliver what is pending.
    static void turn()
    {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    void poll(std::vector<std::uint8_t> report)
    {
        hidapi.reports.push_back(std::move(report));
        interface.calls.clear();
        link.get_device_rawdata();
    }

    LogCapture log;
    RecordingDelegate interface;
    FakeHidapi &hidapi = FakeHidapi::instance();
    HIDManager link;
};
