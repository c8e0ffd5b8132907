// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/BrowserFrame.h"

#include <cstring>

namespace {

constexpr auto lengthBytes = static_cast<qsizetype>(sizeof(std::uint32_t));

} // namespace

QByteArray browserFrame(const QByteArray &message)
{
    const auto length = static_cast<std::uint32_t>(message.size());
    QByteArray frame(lengthBytes, Qt::Uninitialized);
    std::memcpy(frame.data(), &length, sizeof length);
    return frame + message;
}

void BrowserFrameReader::append(const QByteArray &bytes)
{
    if (!m_broken)
        m_buffer.append(bytes);
}

std::optional<QByteArray> BrowserFrameReader::next()
{
    if (m_broken || m_buffer.size() < lengthBytes)
        return std::nullopt;
    std::uint32_t length = 0;
    std::memcpy(&length, m_buffer.constData(), sizeof length);
    if (length == 0 || length > longestBrowserMessage) {
        m_broken = true;
        m_buffer.clear();
        return std::nullopt;
    }
    const auto size = static_cast<qsizetype>(length);
    if (m_buffer.size() < lengthBytes + size)
        return std::nullopt;
    const QByteArray message = m_buffer.mid(lengthBytes, size);
    m_buffer.remove(0, lengthBytes + size);
    return message;
}
