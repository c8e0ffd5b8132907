// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace rules {

enum class Command { On, Off, Hold, HoldOff, OnTare, OffTare, SetUnit };

/// The link's fields that a command reads or changes.
struct CommandState
{
    std::uint8_t scaleCommand = 0xFF;
    int currentScale = 0;
    int unitindex = 0;
    int currentUnit = 4;
    bool currentStatue = false;
    bool TurnON = false;
    bool TurnOff = false;
};

struct CommandOutcome
{
    std::uint8_t scaleCommand;
    bool currentStatue;
    bool TurnON;
    bool TurnOff;
    int unitindex;
    int currentUnit;
    /// Byte 0 is the report number, which the device never sees.
    std::array<std::uint8_t, 9> report;
};

/// `unitIndexArgument` counts for SetUnit alone. The outcome is the same whether or not the report
/// reached the scale.
CommandOutcome command(Command which, int unitIndexArgument, const CommandState &before);

/// Bits 3 to 5 for unit index 1 to 4; any other index leaves them as they are.
std::uint8_t withUnitCode(std::uint8_t scaleCommand, int unitindex);

/// What a finished poll leaves behind for the next exchange.
std::uint8_t closeCommandByte(std::uint8_t scaleCommand, int unitindex);

/// The line a command logs before anything else; empty for On and SetUnit.
std::string commandLogText(Command which);

enum class TraceChannel { Print, Log };

TraceChannel traceChannel(Command which);

/// One trace line per byte sent, without its line end.
std::string traceText(Command which, int index, int byte);

} // namespace rules
