// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// What the scale link tells the scale.

#include "scale/HIDManager.h"

#include "base/Log.h"

void HIDManager::set_device_ON()
{
    m_scaleCommand = switchedOn(m_scaleCommand, m_state.currentScale);
    if (m_open)
        m_open->isUnitCommanded = true;
    sendCommand(Trace::Io);
    m_state.currentStatue = true;
    m_TurnON = true;
}

void HIDManager::set_device_OFF()
{
    logLine(QStringLiteral("set_device_OFF"));
    m_scaleCommand = switchedOff(m_scaleCommand);
    sendCommand(Trace::SystemArrow);
    m_state.currentStatue = false;
    m_TurnOff = true;
    m_TurnON = false;
}

void HIDManager::set_device_HOLD()
{
    logLine(QStringLiteral("set_device_HOLD"));
    m_scaleCommand = holding(m_scaleCommand);
    sendCommand(Trace::Io);
}

void HIDManager::set_device_HOLDOFF()
{
    logLine(QStringLiteral("set_device_HOLDOFF"));
    m_scaleCommand = holdReleased(m_scaleCommand);
    sendCommand(Trace::Io);
}

void HIDManager::set_device_ON_TARE()
{
    logLine(QStringLiteral("set_device_ON_TARE"));
    m_scaleCommand = taring(m_scaleCommand);
    sendCommand(Trace::Io);
}

void HIDManager::set_device_OFF_TARE()
{
    logLine(QStringLiteral("set_device_OFF_TARE"));
    m_scaleCommand = tareReleased(m_scaleCommand);
    sendCommand(Trace::System);
}

void HIDManager::set_Unit(int unit)
{
    m_state.unitindex = unit;
    m_scaleCommand = unitChanged(m_scaleCommand, unit);
    sendCommand(Trace::Io);
    m_state.currentUnit = unit;
    if (!m_open)
        return;
    m_open->isUnitCommanded = true;
    m_open->chosen = units();
}

int HIDManager::sendFeatureReport(const FeatureReport &report)
{
    return m_handle ? m_handle->sendFeatureReport(report) : -1;
}

void HIDManager::sendCommand(Trace trace)
{
    const int sent = sendFeatureReport(commandReport(m_scaleCommand));
    if (m_open)
        m_open->isCommanded = true;
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
