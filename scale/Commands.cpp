// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the scale link tells the scale.

#include "scale/HIDManager.h"

#include "base/Log.h"

void HIDManager::set_device_ON()
{
    command = switchedOn(command, state.currentScale);
    sendCommand(Trace::Io);
    state.currentStatue = true;
    turnedOn = true;
}

void HIDManager::set_device_OFF()
{
    logLine(QStringLiteral("set_device_OFF"));
    command = switchedOff(command);
    sendCommand(Trace::SystemArrow);
    state.currentStatue = false;
    turnedOff = true;
    turnedOn = false;
}

void HIDManager::set_device_HOLD()
{
    logLine(QStringLiteral("set_device_HOLD"));
    command = holding(command);
    sendCommand(Trace::Io);
}

void HIDManager::set_device_HOLDOFF()
{
    logLine(QStringLiteral("set_device_HOLDOFF"));
    command = holdReleased(command);
    sendCommand(Trace::Io);
}

void HIDManager::set_device_ON_TARE()
{
    logLine(QStringLiteral("set_device_ON_TARE"));
    command = taring(command);
    sendCommand(Trace::Io);
}

void HIDManager::set_device_OFF_TARE()
{
    logLine(QStringLiteral("set_device_OFF_TARE"));
    command = tareReleased(command);
    sendCommand(Trace::System);
}

void HIDManager::set_Unit(int unit)
{
    state.unitindex = unit;
    command = unitChanged(command, unit);
    sendCommand(Trace::Io);
    state.currentUnit = unit;
}

int HIDManager::sendFeatureReport(const FeatureReport &report)
{
    return handle ? handle->sendFeatureReport(report) : -1;
}

void HIDManager::sendCommand(Trace trace)
{
    const int sent = sendFeatureReport(commandReport(command));
    if (sent < 0)
        traceLine(QStringLiteral("Unable to read()"));
    // Commands are not answered: the trace counts the bytes that went out.
    for (int i = 0; i < sent; ++i) {
        switch (trace) {
        case Trace::Io: traceLine(QStringLiteral("buf[%1]: %2").arg(i).arg(0)); break;
        case Trace::System: logLine(QStringLiteral("buf[%1]: %2").arg(i).arg(0)); break;
        case Trace::SystemArrow: logLine(QStringLiteral("-->>buf[%1]: %2").arg(i).arg(0)); break;
        }
    }
}
