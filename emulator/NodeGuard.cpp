// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Preloaded into the started command, before libumockdev-preload, which has two faults with a
// node that cannot be opened, as one that has just been unplugged: it lets the program open the
// machine's own /dev/hidrawN instead, and it keeps a place of its table of 50 for every failure
// and aborts the program when the table is full. Such an open() does not get as far as that here.

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

using OpenFunction = int (*)(const char *, int, ...);

constexpr char guardedPrefix[] = "/dev/hidraw";

int accessFor(int flags)
{
    switch (flags & O_ACCMODE) {
    case O_RDONLY: return R_OK;
    case O_WRONLY: return W_OK;
    default: return R_OK | W_OK;
    }
}

/// Sets errno when not.
bool mayOpen(const char *path, int flags)
{
    const char *testbed = getenv("UMOCKDEV_DIR");
    if (testbed == nullptr || strncmp(path, guardedPrefix, sizeof guardedPrefix - 1) != 0)
        return true;
    char node[PATH_MAX];
    snprintf(node, sizeof node, "%s%s", testbed, path);
    return access(node, accessFor(flags)) == 0;
}

int guardedOpen(const char *function, const char *path, int flags, mode_t mode)
{
    if (!mayOpen(path, flags))
        return -1;
    void *next = dlsym(RTLD_NEXT, function);
    return reinterpret_cast<OpenFunction>(next)(path, flags, mode);
}

/// The third argument is there only with flags that create a file.
mode_t modeArgument(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return guardedOpen("open", path, flags, mode);
}

extern "C" int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeArgument(flags, arguments);
    va_end(arguments);
    return guardedOpen("open64", path, flags, mode);
}
