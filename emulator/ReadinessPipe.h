// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>
#include <sys/types.h>

/// The named pipe that stands in for a character device, so that the kernel itself knows whether
/// poll() finds the node readable and when the program has closed it. The reports do not pass
/// through it.
class ReadinessPipe
{
public:
    /// Replaces whatever is at @p path in one step: nobody finds the path empty.
    explicit ReadinessPipe(const std::string &path, mode_t mode);
    ~ReadinessPipe();
    ReadinessPipe(const ReadinessPipe &) = delete;
    ReadinessPipe &operator=(const ReadinessPipe &) = delete;

    enum class Claim { Opened, NobodyThere };

    /// To be called once, after a program may have opened the node. @p closed is called when the
    /// last one that did has closed it.
    Claim claim(std::function<void()> closed);

    enum class Readiness { Nothing, Readable };
    void set(Readiness wanted);

private:
    int m_keeper = -1; ///< both directions, so that no open() waits for a partner; until the claim
    int m_writer = -1;
    unsigned m_watch = 0;
    Readiness m_readiness = Readiness::Nothing;
    std::function<void()> m_closedCallback;
};
