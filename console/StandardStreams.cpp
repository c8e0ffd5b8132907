// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/StandardStreams.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <sysexits.h>
#include <unistd.h>

void occupyStandardStreams()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(descriptor, F_GETFD) >= 0)
            continue;
        // In the direction in which none is used; the lowest free number is the one that is
        // missing.
        const int direction = descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (open("/dev/null", direction) < 0)
            return;
    }
}

int statusOfOutput(int status)
{
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    std::fprintf(stderr, "Cannot write: %s\n", std::strerror(errno != 0 ? errno : EIO));
    return EX_IOERR;
}
