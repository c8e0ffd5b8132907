// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/GadgetScale.h"

#include "emulator/MouseReportDescriptor.h"
#include "emulator/ScaleReportDescriptor.h"
#include "scale/ScaleIdentity.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <glib-unix.h>
#include <memory>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// So far apart are two copies of a report: more than the host takes to fetch one.
constexpr unsigned copyInterval = 30; // ms

/// Bytes; the most that an interrupt transfer of this speed has.
constexpr std::uint8_t wideReport = 64;

/// The scale's, but for the length of its input reports.
constexpr auto wideReportDescriptor = [] {
    constexpr std::size_t inputCount = 15;
    auto descriptor = scaleReportDescriptor;
    descriptor.at(inputCount) = wideReport;
    return descriptor;
}();
static_assert(scaleReportDescriptor[14] == 0x95, "the count of the input report's bytes");

GadgetIdentity identityOf(const std::string &name, GadgetScale::Form form)
{
    using Form = GadgetScale::Form;
    GadgetIdentity identity{.name = name,
                            .vendorId = scaleVendorId,
                            .productId = scaleProductId,
                            .manufacturer = "Kelvane",
                            .product = "Postal Scale",
                            .reportDescriptor = scaleReportDescriptor};
    if (form == Form::Wide) {
        identity.reportDescriptor = wideReportDescriptor;
        identity.reportLength = wideReport;
    }
    if (form == Form::Composite)
        identity.secondDescriptor = mouseReportDescriptor;
    return identity;
}

} // namespace

GadgetScale::GadgetScale(const std::string &gadgetName, const std::string &deviceController)
    : name(gadgetName)
    , gadget(identityOf(name, Form::Plain), deviceController)
{
}

GadgetScale::~GadgetScale()
{
    sendUnasked(0);
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

void GadgetScale::setForm(Form form)
{
    gadget.setIdentity(identityOf(name, form));
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

void GadgetScale::answer(const ScaleModel::InputReport &report)
{
    for (int copy = 0; copy < manner.copies; ++copy)
        sendLater(report, manner.delay + static_cast<unsigned>(copy) * copyInterval);
}

void GadgetScale::sendLater(const ScaleModel::InputReport &report, unsigned milliseconds)
{
    if (milliseconds == 0) {
        send(report);
        return;
    }
    struct Due
    {
        GadgetScale *scale;
        ScaleModel::InputReport report;
    };
    const auto callback = [](gpointer data) -> gboolean {
        const std::unique_ptr<Due> due(static_cast<Due *>(data));
        due->scale->send(due->report);
        return G_SOURCE_REMOVE;
    };
    g_timeout_add(milliseconds, callback, new Due{this, report});
}

void GadgetScale::sendUnasked(unsigned milliseconds)
{
    if (unaskedTimer != 0)
        g_source_remove(std::exchange(unaskedTimer, 0));
    if (milliseconds == 0)
        return;
    const auto callback = [](gpointer data) -> gboolean {
        const auto *scale = static_cast<GadgetScale *>(data);
        scale->send(scale->model.reading());
        return G_SOURCE_CONTINUE;
    };
    unaskedTimer = g_timeout_add(milliseconds, callback, this);
}

// While the host has not fetched the report before, this one is lost, as in a scale that has room
// for one.
void GadgetScale::send(const ScaleModel::InputReport &report) const
{
    if (descriptor < 0)
        return;
    std::vector<std::uint8_t> bytes(report.begin(), report.end());
    bytes.resize(manner.length);
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
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
