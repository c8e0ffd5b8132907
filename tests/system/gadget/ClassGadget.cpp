// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/ClassGadget.h"

#include "emulator/ClassScaleDescriptors.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <glib-unix.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

constexpr unsigned sendInterval = 200; // ms

/// Stable at zero, in ounces.
const ClassGadget::Report emptyPan{3, 2, 11, 0xFF, 0, 0};

const ClassGadget::Report zero{2, 2};

GadgetIdentity identityOf(const std::string &name)
{
    return {.name = name,
            .vendorId = 0x1209, // for tests, by pid.codes
            .productId = 0x0005,
            .manufacturer = "Example",
            .product = name,
            .reportDescriptor = classScaleDescriptor};
}

} // namespace

ClassGadget::ClassGadget(const std::string &name, const std::string &deviceController)
    : gadget(identityOf(name), deviceController)
    , reports{emptyPan}
{
}

ClassGadget::~ClassGadget()
{
    closeNode();
}

void ClassGadget::plug()
{
    gadget.plug();
    const std::string node = gadget.node();
    descriptor = open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), node);
    const auto readable = [](gint, GIOCondition, gpointer scale) -> gboolean {
        static_cast<ClassGadget *>(scale)->receive();
        return G_SOURCE_CONTINUE;
    };
    watch = g_unix_fd_add(descriptor, G_IO_IN, readable, this);
    const auto tick = [](gpointer scale) -> gboolean {
        static_cast<ClassGadget *>(scale)->send();
        return G_SOURCE_CONTINUE;
    };
    timer = g_timeout_add(sendInterval, tick, this);
}

void ClassGadget::unplug()
{
    closeNode();
    gadget.unplug();
}

void ClassGadget::say(std::vector<Report> wanted)
{
    reports = std::move(wanted);
    next = 0;
}

void ClassGadget::receive()
{
    Report report(64);
    const ssize_t length = read(descriptor, report.data(), report.size());
    if (length <= 0)
        return;
    report.resize(static_cast<std::size_t>(length));
    received.push_back(report);
    if (report == zero)
        say({emptyPan});
}

// Lost while the host has not fetched the one before.
void ClassGadget::send()
{
    const Report &report = reports.at(next);
    next = (next + 1) % reports.size();
    if (write(descriptor, report.data(), report.size()) < 0 && errno != EAGAIN)
        std::perror("postal-scale-gadget: input report");
}

void ClassGadget::closeNode()
{
    if (descriptor < 0)
        return;
    g_source_remove(std::exchange(timer, 0));
    g_source_remove(std::exchange(watch, 0));
    close(std::exchange(descriptor, -1));
}
