// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <cstdint>
#include <span>

/// The one byte that drives the scale. It goes out with every command and again with every poll.
using CommandByte = std::uint8_t;

/// Nine bytes as hidapi takes them: the first is the report number (0, not transmitted), so eight
/// bytes reach the scale.
using FeatureReport = std::array<std::uint8_t, 9>;

/// Set: power off. A one-shot: it rides on the command and on the next poll, then it is cleared.
inline constexpr CommandByte powerOffBit = 0x01;
/// Clear while the scale is to take its load as tare.
inline constexpr CommandByte tareReleasedBit = 0x02;
/// Clear while the scale is to hold its reading.
inline constexpr CommandByte holdReleasedBit = 0x04;
/// Bits 3 to 5: one of them is cleared to choose a unit, none for metric.
inline constexpr CommandByte unitCodeBits = 0x38;
/// Clear while a unit change goes out: in its command and in the next poll.
inline constexpr CommandByte unitSettledBit = 0x80;

/// The byte before the first report: every bit set.
inline constexpr CommandByte initialCommandByte = 0xFF;

/// @param unitindex one of unitindex::; any other leaves the unit bits as they are
CommandByte withUnitCode(CommandByte command, int unitindex);

/// The binary scale starts in pounds, any other in pounds and ounces, whatever was chosen before.
CommandByte switchedOn(CommandByte command, int currentScale);
CommandByte switchedOff(CommandByte command);
CommandByte holding(CommandByte command);
CommandByte holdReleased(CommandByte command);
CommandByte taring(CommandByte command);
CommandByte tareReleased(CommandByte command);
CommandByte unitChanged(CommandByte command, int unitindex);

/// What stays of the byte once a poll has carried it.
CommandByte afterPoll(CommandByte command, int unitindex);

FeatureReport commandReport(CommandByte command);
FeatureReport pollReport(CommandByte command);

/// Asks for a reading; with its report number, as above.
bool isPollReport(std::span<const std::uint8_t> report);
