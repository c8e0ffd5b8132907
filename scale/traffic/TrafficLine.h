// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <chrono>
#include <cstdint>
#include <optional>

/// One thing that passed between the program and the system's HID devices, as one line of text:
///
///     0.004 attach hidraw0 04d9:8010
///     0.004 change hidraw0 04d9:8010
///     0.074 open hidraw0
///     0.074 open hidraw0 denied: Permission denied
///     0.474 send 00 90 ff 80 00 00 00 00 00
///     0.475 read 01 34 12 00 00 00 00 00
///     0.875 send failed 00 90 ff 80 00 00 00 00 00
///     0.876 read failed
///     2.310 detach hidraw0 04d9:8010
///     3.100 about hidraw1 05 8d 09 20 a1 01 c0: Maker Scale
struct TrafficLine
{
    enum class Kind : std::uint8_t {
        Attach,
        Change,
        Detach,
        Open,
        Send,
        Read,
        About, ///< a scale of the class: its report descriptor, and its name
    };
    enum class Outcome : std::uint8_t {
        Done,
        Failed,
        Denied, ///< of an open alone: this user may not use the node
    };

    std::chrono::milliseconds time{0}; ///< since the start of the program
    Kind kind = Kind::Read;
    Outcome outcome = Outcome::Done;
    QString device; ///< its node's name without the folder; empty for Send and Read
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    QByteArray report; ///< sent, with its report number, or read; a read may be empty
    QString reason;    ///< of an open that was not Done; of About, the device's name

    bool operator==(const TrafficLine &) const = default;

    /// Without the end of the line.
    QByteArray toText() const;
    /// Nothing where @p text is no such line, to the letter.
    static std::optional<TrafficLine> parse(const QByteArray &text);
};
