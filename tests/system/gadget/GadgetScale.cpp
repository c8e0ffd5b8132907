// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/GadgetScale.h"

#include "emulator/ScaleReportDescriptor.h"
#include "scale/ScaleIdentity.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <glib-unix.h>
#include <system_error>
#include <unistd.h>
#include <utility>

GadgetScale::GadgetScale(const std::string &name, const std::string &deviceController)
    : gadget({.name = name,
              .vendorId = scaleVendorId,
              .productId = scaleProductId,
              .manufacturer = "Kelvane",
              .product = "Postal Scale",
              .reportDescriptor = scaleReportDescriptor},
             deviceController)
{
}

GadgetScale::~GadgetScale()
{
    closeNode();
}

void GadgetScale::plug()
{
    model.plugIn();
    gadget.plug();
    const std::string node = gadget.node();
    descriptor = open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), node);
    const auto callback = [](gint, GIOCondition, gpointer scale) -> gboolean {
        static_cast<GadgetScale *>(scale)->receive();
        return G_SOURCE_CONTINUE;
    };
    watch = g_unix_fd_add(descriptor, G_IO_IN, callback, this);
}

void GadgetScale::unplug()
{
    closeNode();
    gadget.unplug();
}

void GadgetScale::receive()
{
    std::array<std::uint8_t, 64> buffer = {};
    const ssize_t length = read(descriptor, buffer.data(), buffer.size());
    if (length <= 0)
        return;
    const std::span report(buffer.data(), static_cast<std::size_t>(length));
    log.record(report);
    if (polls == Polls::Unanswered && ScaleModel::isPoll(report))
        return;
    if (const auto reply = model.receive(report))
        answer(*reply);
}

// While the host has not fetched the report before, this one is lost, as in a scale that has room
// for one.
void GadgetScale::answer(const ScaleModel::InputReport &report) const
{
    const ssize_t written = write(descriptor, report.data(), report.size());
    if (written < 0 && errno != EAGAIN)
        std::perror("postal-scale-gadget: input report");
}

void GadgetScale::closeNode()
{
    if (descriptor < 0)
        return;
    g_source_remove(std::exchange(watch, 0));
    close(std::exchange(descriptor, -1));
}
