// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/FollowCommand.h"

#include "console/SingleInstanceRequest.h"
#include "console/UnseenSource.h"
#include "sockets/LocalCall.h"

#include <QJsonDocument>
#include <QThread>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sysexits.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

constexpr auto sourceConnectTime = 200ms;
/// A window that has just gone leaves its place to an unseen source, or to the next window.
constexpr auto retryInterval = 200ms;
/// As long as a source says nothing of its own accord, and half as much again.
constexpr auto hangTime = 15s;
/// Of unseen sources, each of which ends by itself where there is another.
constexpr auto startInterval = 5s;
/// How long nobody notices that the reader has gone.
constexpr auto lookInterval = 500ms;

bool canBeWritten(int descriptor)
{
    const int flags = fcntl(descriptor, F_GETFL);
    return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY;
}

/// Of a pipe that does not make its writers wait.
void waitForRoom(int descriptor)
{
    pollfd output{.fd = descriptor, .events = POLLOUT, .revents = 0};
    poll(&output, 1, -1);
}

} // namespace

FollowCommand::FollowCommand(const QString &socketPath)
    : m_socketPath(socketPath)
    , m_hang(hangTime)
{
}

int FollowCommand::run(const CommandLine &line)
{
    if (m_socketPath.isEmpty()) {
        std::fputs("Nothing can be followed; postal-scale --doctor tells what helps\n", stderr);
        return ReadingReport::of(ReportState::NoAnswer).exitStatus();
    }
    if (!canBeWritten(STDOUT_FILENO))
        endWith(EBADF);
    std::signal(SIGPIPE, SIG_IGN);
    m_line = line;
    while (!m_isOver) {
        LocalCall source(m_socketPath, sourceConnectTime);
        m_isSourceThere = source.isConnected() || source.isBusy();
        if (source.isConnected())
            follow(source);
        else if (!source.isBusy())
            startSource();
        tellOfHang();
        lookForReader();
        QThread::msleep(retryInterval.count());
    }
    return m_status;
}

void FollowCommand::follow(LocalCall &source)
{
    m_count.beginConnection();
    m_parcels.beginConnection();
    source.send(QJsonDocument(followRequest()).toJson(QJsonDocument::Compact) + '\n',
                sourceConnectTime);
    while (!m_isOver) {
        if (const auto line = source.line(lookInterval))
            take(*line);
        else if (!source.isConnected())
            return;
        else
            tellOfHang();
        lookForReader();
    }
}

void FollowCommand::startSource()
{
    if (!m_nextStart.hasExpired())
        return;
    UnseenSource::start(m_line.infoFile);
    m_nextStart.setRemainingTime(startInterval);
}

void FollowCommand::take(const QByteArray &line)
{
    QJsonObject object = QJsonDocument::fromJson(line).object();
    // Such as the answer of a program that does not know followers.
    if (object.isEmpty())
        return;
    if (isTooMany(object)) {
        refuse();
        return;
    }
    m_hang.setRemainingTime(hangTime);
    const ReadingReport report = ReadingReport::fromJson(object);
    object.insert(QStringLiteral("count"), m_count.next(object));
    if (m_line.settledOnly && !m_parcels.takes(report))
        return;
    // A parcel is news by itself.
    const QString words = m_line.settledOnly ? report.words : m_words.next(report);
    tell(words, QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void FollowCommand::refuse()
{
    std::fputs("Too many programs follow the scale already; end one of them first\n", stderr);
    m_isOver = true;
    m_status = EX_UNAVAILABLE;
}

void FollowCommand::tellOfHang()
{
    if (!m_hang.hasExpired())
        return;
    m_hang.setRemainingTime(hangTime);
    const ReadingReport report =
        m_isSourceThere ? ReadingReport::ofHangingWindow() : ReadingReport::ofMissingSource();
    if (!m_line.settledOnly)
        tell(m_words.next(report), followerLine(report, m_count.next()));
}

void FollowCommand::tell(const QString &words, const QByteArray &json)
{
    write(m_line.format == ReportFormat::Json ? json : words.toUtf8() + '\n');
}

void FollowCommand::write(const QByteArray &line)
{
    for (qsizetype written = 0; written < line.size() && !m_isOver;) {
        const ssize_t part = ::write(STDOUT_FILENO, line.constData() + written,
                                     static_cast<std::size_t>(line.size() - written));
        if (part >= 0)
            written += part;
        else if (errno == EAGAIN)
            waitForRoom(STDOUT_FILENO);
        else if (errno != EINTR)
            endWith(errno);
    }
    // However long the reader took, it says nothing of whom it hears.
    m_hang.setRemainingTime(hangTime);
}

void FollowCommand::endWith(int error)
{
    m_isOver = true;
    if (error == EPIPE)
        return;
    std::fprintf(stderr, "Cannot write: %s\n", std::strerror(error));
    m_status = EX_IOERR;
}

void FollowCommand::lookForReader()
{
    pollfd output{.fd = STDOUT_FILENO, .events = 0, .revents = 0};
    if (poll(&output, 1, 0) <= 0)
        return;
    if ((output.revents & POLLNVAL) != 0)
        endWith(EBADF);
    else if ((output.revents & (POLLERR | POLLHUP)) != 0)
        endWith(EPIPE);
}
