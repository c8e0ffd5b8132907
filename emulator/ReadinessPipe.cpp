// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ReadinessPipe.h"

#include <cerrno>
#include <fcntl.h>
#include <glib-unix.h>
#include <poll.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

std::system_error failure(const std::string &what)
{
    return std::system_error(errno, std::generic_category(), what);
}

/// The directory entry may be gone by now.
int openAgain(int descriptor, int flags)
{
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    return open(path.c_str(), flags | O_NONBLOCK | O_CLOEXEC);
}

} // namespace

ReadinessPipe::ReadinessPipe(const std::string &path, mode_t mode)
{
    const std::string draft = path + ".new";
    if (mkfifo(draft.c_str(), S_IRUSR | S_IWUSR) != 0)
        throw failure("mkfifo " + draft);
    m_keeper = open(draft.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    m_writer = open(draft.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_keeper < 0 || m_writer < 0 || fchmod(m_writer, mode) != 0)
        throw failure("open " + draft);
    if (rename(draft.c_str(), path.c_str()) != 0)
        throw failure("rename " + draft);
}

ReadinessPipe::~ReadinessPipe()
{
    if (m_watch != 0)
        g_source_remove(m_watch);
    if (m_keeper >= 0)
        close(m_keeper);
    close(m_writer);
}

ReadinessPipe::Claim ReadinessPipe::claim(std::function<void()> closed)
{
    close(std::exchange(m_keeper, -1));
    pollfd query = {m_writer, 0, 0};
    if (poll(&query, 1, 0) > 0 && (query.revents & POLLERR) != 0)
        return Claim::NobodyThere;

    m_closedCallback = std::move(closed);
    const auto callback = [](gint, GIOCondition, gpointer pointer) -> gboolean {
        auto *pipe = static_cast<ReadinessPipe *>(pointer);
        pipe->m_watch = 0;
        const std::function<void()> notify = std::move(pipe->m_closedCallback);
        notify(); // may end this object
        return G_SOURCE_REMOVE;
    };
    m_watch = g_unix_fd_add(m_writer, G_IO_ERR, callback, this);
    return Claim::Opened;
}

void ReadinessPipe::set(Readiness wanted)
{
    if (wanted == m_readiness)
        return;
    m_readiness = wanted;
    char token = 0;
    if (wanted == Readiness::Readable) {
        [[maybe_unused]] const ssize_t written = write(m_writer, &token, 1);
        return;
    }
    const int reader = openAgain(m_writer, O_RDONLY);
    [[maybe_unused]] const ssize_t taken = read(reader, &token, 1);
    close(reader);
}
