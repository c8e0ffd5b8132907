// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Any bytes from a browser: cut into messages, however they arrive, and understood or refused.

#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserMessage.h"
#include "tests/fuzz/Fuzz.h"

namespace {

struct Received
{
    QList<QByteArray> messages;
    bool broken = false;

    bool operator==(const Received &) const = default;
};

Received receive(const QByteArray &bytes, qsizetype chunk)
{
    BrowserFrameReader reader;
    Received received;
    for (qsizetype start = 0; start < bytes.size(); start += chunk) {
        reader.append(bytes.mid(start, chunk));
        while (const auto message = reader.next())
            received.messages.append(*message);
    }
    received.broken = reader.isBroken();
    return received;
}

void understand(const QByteArray &json)
{
    const auto message = parseBrowserMessage(json);
    if (!message)
        return;
    if (const auto *hello = std::get_if<BrowserHello>(&*message))
        require(hello->protocol >= 0, "a protocol is no negative number");
    if (const auto *current = std::get_if<BrowserCurrent>(&*message))
        require(!current->page || current->page->host.size() < 254, "a host can be shown");
    if (const auto *focus = std::get_if<BrowserFocus>(&*message))
        require(focus->ago.count() >= 0, "no focus lies in the future");
    if (const auto *ran = std::get_if<BrowserRan>(&*message))
        require(!ran->fields ||
                    (ran->fields->changed >= 0 && ran->fields->changed <= ran->fields->written),
                "only what was written can be changed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QByteArray stream(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    const Received whole = receive(stream, std::max(stream.size(), qsizetype{1}));
    require(receive(stream, 3) == whole, "it does not matter how a stream is cut");
    for (const QByteArray &message : whole.messages) {
        understand(message);
        require(receive(browserFrame(message), 4).messages == QList<QByteArray>{message},
                "a frame holds its message");
    }
    understand(stream);
    return 0;
}
