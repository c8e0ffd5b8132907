// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/CommandByte.h"

#include "scale/ScaleCodes.h"

namespace {

constexpr std::uint8_t pollMarker = 0x90;

constexpr CommandByte cleared(CommandByte command, CommandByte bits)
{
    return static_cast<CommandByte>(command & ~bits);
}

constexpr CommandByte set(CommandByte command, CommandByte bits)
{
    return static_cast<CommandByte>(command | bits);
}

} // namespace

CommandByte withUnitCode(CommandByte command, int unitindex)
{
    switch (unitindex) {
    case unitindex::metric: return set(command, unitCodeBits);
    case unitindex::ounces: return set(cleared(command, 0x08), 0x30);
    case unitindex::poundsOuncesA: return set(cleared(command, 0x10), 0x28);
    case unitindex::poundsOuncesB: return set(cleared(command, 0x20), 0x18);
    default: return command;
    }
}

CommandByte switchedOn(CommandByte command, int currentScale)
{
    const CommandByte awake = set(cleared(command, powerOffBit), holdReleasedBit);
    const int unit =
        currentScale == scaletype::binary ? unitindex::ounces : unitindex::poundsOuncesB;
    return set(withUnitCode(awake, unit), unitSettledBit);
}

CommandByte switchedOff(CommandByte command)
{
    return set(command, powerOffBit | unitSettledBit);
}

CommandByte holding(CommandByte command)
{
    return set(cleared(command, holdReleasedBit), unitSettledBit);
}

CommandByte holdReleased(CommandByte command)
{
    return set(command, holdReleasedBit | unitSettledBit);
}

CommandByte taring(CommandByte command)
{
    return set(cleared(command, tareReleasedBit), unitSettledBit);
}

CommandByte tareReleased(CommandByte command)
{
    return set(command, tareReleasedBit);
}

CommandByte unitChanged(CommandByte command, int unitindex)
{
    return cleared(withUnitCode(command, unitindex), unitSettledBit);
}

CommandByte afterPoll(CommandByte command, int unitindex)
{
    return cleared(set(withUnitCode(command, unitindex), unitSettledBit), powerOffBit);
}

FeatureReport commandReport(CommandByte command)
{
    return {0x00, 0xA0, command, 0xA0};
}

FeatureReport pollReport(CommandByte command)
{
    return {0x00, pollMarker, command, 0x80};
}

bool isPollReport(std::span<const std::uint8_t> report)
{
    return report.size() > 1 && report[1] == pollMarker;
}
