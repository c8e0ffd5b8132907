// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <cstdint>
#include <optional>

// The framing of native messaging, which the link uses as it is: four bytes of length in the
// machine's own order, then the message.

/// Bytes of one message, either way. The longest that is meant to be sent has some 7000.
inline constexpr std::uint32_t longestBrowserMessage = 64 * 1024;

QByteArray browserFrame(const QByteArray &message);

/// Cuts a stream of bytes into messages.
class BrowserFrameReader
{
public:
    /// Never holds more than one message and what came with it, whatever length is announced.
    void append(const QByteArray &bytes);

    /// The next complete message.
    std::optional<QByteArray> next();

    /// A message of no length or of too great a length was announced: nothing that follows can be
    /// made sense of.
    bool isBroken() const { return m_broken; }

private:
    QByteArray m_buffer;
    bool m_broken = false;
};
