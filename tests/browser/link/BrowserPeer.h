// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/BrowserFrame.h"
#include "browser/link/BrowserMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

/// The far end of the browser link, as a browser's host would be, on a plain socket.
class BrowserPeer
{
public:
    static constexpr int patience = 10000; // ms

    explicit BrowserPeer(const QString &path)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray name = path.toLocal8Bit();
        std::memcpy(address.sun_path, name.constData(), static_cast<std::size_t>(name.size()));
        descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        connected = ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address),
                              sizeof address) == 0;
    }

    ~BrowserPeer()
    {
        hangUp();
        close(descriptor);
    }

    BrowserPeer(const BrowserPeer &) = delete;
    BrowserPeer &operator=(const BrowserPeer &) = delete;

    bool isConnected() const { return connected; }

    void hangUp() { shutdown(descriptor, SHUT_RDWR); }

    /// False once the other side has closed.
    bool sendBytes(const QByteArray &bytes)
    {
        qsizetype done = 0;
        while (done < bytes.size()) {
            const ssize_t count =
                ::send(descriptor, bytes.constData() + done,
                       static_cast<std::size_t>(bytes.size() - done), MSG_NOSIGNAL);
            if (count <= 0)
                return false;
            done += count;
        }
        return true;
    }

    bool send(const QByteArray &json) { return sendBytes(browserFrame(json)); }

    /// The next message; nothing when the other side has closed or says nothing in time.
    std::optional<QJsonObject> receive(int time = patience)
    {
        for (;;) {
            if (const auto message = reader.next())
                return QJsonDocument::fromJson(*message).object();
            if (readMore(time) != Read::Bytes)
                return std::nullopt;
        }
    }

    bool isClosedWithin(int time)
    {
        for (;;) {
            const Read outcome = readMore(time);
            if (outcome != Read::Bytes)
                return outcome == Read::End;
        }
    }

    bool sendRan(int id, const QJsonValue &fields, const QJsonArray &notes = {})
    {
        const QJsonObject ran{{QStringLiteral("id"), id},
                              {QStringLiteral("fields"), fields},
                              {QStringLiteral("notes"), notes}};
        return send(QJsonDocument(QJsonObject{{QStringLiteral("ran"), ran}})
                        .toJson(QJsonDocument::Compact));
    }

    bool sendRan(int id, int written, int changed = 0, const QJsonArray &notes = {})
    {
        return sendRan(
            id,
            QJsonObject{{QStringLiteral("written"), written}, {QStringLiteral("changed"), changed}},
            notes);
    }

private:
    enum class Read { Bytes, End, Nothing };

    Read readMore(int time)
    {
        pollfd input{.fd = descriptor, .events = POLLIN, .revents = 0};
        if (poll(&input, 1, time) <= 0)
            return Read::Nothing;
        std::array<char, 4096> bytes;
        const ssize_t count = read(descriptor, bytes.data(), bytes.size());
        if (count <= 0)
            return Read::End;
        reader.append(QByteArray(bytes.data(), count));
        return Read::Bytes;
    }

    int descriptor = -1;
    bool connected = false;
    BrowserFrameReader reader;
};
