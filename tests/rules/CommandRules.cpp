// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/CommandRules.h"

namespace rules {

namespace {

std::uint8_t changed(std::uint8_t value, int keep, int set)
{
    return static_cast<std::uint8_t>((value & keep) | set);
}

std::uint8_t switchedOn(std::uint8_t value, int currentScale)
{
    value = changed(value, 0xFE, 0x04);
    value = withUnitCode(value, currentScale == 1 ? 2 : 4);
    return changed(value, 0xFF, 0x80);
}

std::uint8_t commandByte(Command which, int unitIndexArgument, const CommandState &before)
{
    const std::uint8_t value = before.scaleCommand;
    switch (which) {
    case Command::On: return switchedOn(value, before.currentScale);
    case Command::Off: return changed(value, 0xFF, 0x01 | 0x80);
    case Command::Hold: return changed(value, 0xFB, 0x80);
    case Command::HoldOff: return changed(value, 0xFF, 0x04 | 0x80);
    case Command::OnTare: return changed(value, 0xFD, 0x80);
    case Command::OffTare: return changed(value, 0xFF, 0x02);
    case Command::SetUnit: return changed(withUnitCode(value, unitIndexArgument), 0x7F, 0x00);
    }
    return value;
}

} // namespace

CommandOutcome command(Command which, int unitIndexArgument, const CommandState &before)
{
    CommandOutcome after{};
    after.scaleCommand = commandByte(which, unitIndexArgument, before);
    after.currentStatue = before.currentStatue;
    after.TurnON = before.TurnON;
    after.TurnOff = before.TurnOff;
    after.unitindex = before.unitindex;
    after.currentUnit = before.currentUnit;
    after.report = {0x00, 0xA0, after.scaleCommand, 0xA0, 0, 0, 0, 0, 0};
    if (which == Command::On) {
        after.currentStatue = true;
        after.TurnON = true;
    } else if (which == Command::Off) {
        after.currentStatue = false;
        after.TurnOff = true;
        after.TurnON = false;
    } else if (which == Command::SetUnit) {
        after.unitindex = unitIndexArgument;
        after.currentUnit = unitIndexArgument;
    }
    return after;
}

std::uint8_t withUnitCode(std::uint8_t scaleCommand, int unitindex)
{
    switch (unitindex) {
    case 1: return changed(scaleCommand, 0xFF, 0x38);
    case 2: return changed(scaleCommand, 0xF7, 0x30);
    case 3: return changed(scaleCommand, 0xEF, 0x28);
    case 4: return changed(scaleCommand, 0xDF, 0x18);
    default: return scaleCommand;
    }
}

std::uint8_t closeCommandByte(std::uint8_t scaleCommand, int unitindex)
{
    const std::uint8_t coded = withUnitCode(scaleCommand, unitindex);
    return changed(changed(coded, 0xFF, 0x80), 0xFE, 0x00);
}

std::string commandLogText(Command which)
{
    switch (which) {
    case Command::Off: return "set_device_OFF";
    case Command::Hold: return "set_device_HOLD";
    case Command::HoldOff: return "set_device_HOLDOFF";
    case Command::OnTare: return "set_device_ON_TARE";
    case Command::OffTare: return "set_device_OFF_TARE";
    case Command::On:
    case Command::SetUnit: break;
    }
    return {};
}

TraceChannel traceChannel(Command which)
{
    return which == Command::Off || which == Command::OffTare ? TraceChannel::Log
                                                              : TraceChannel::Print;
}

std::string traceText(Command which, int index, int byte)
{
    const std::string start = which == Command::Off ? "-->>buf[" : "buf[";
    return start + std::to_string(index) + "]: " + std::to_string(byte);
}

} // namespace rules
