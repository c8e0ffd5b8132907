// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/EmulatedScale.h"

#include "emulator/ScaleReportDescriptor.h"
#include "scale/ScaleIdentity.h"

#include <glib.h>

EmulatedScale::EmulatedScale(Testbed &testbed, std::string port)
    : PluggableDevice(testbed, {std::move(port), scaleVendorId, scaleProductId, "Kelvane",
                                "Postal Scale", scaleReportDescriptor})
{
}

void EmulatedScale::plug()
{
    model.plugIn();
    PluggableDevice::plug();
}

void EmulatedScale::unplug()
{
    m_unplugRequest = UnplugRequest::None;
    PluggableDevice::unplug();
}

void EmulatedScale::setPolls(Polls wanted)
{
    m_polls = wanted;
    m_random.seed();
}

void EmulatedScale::setInputTransfer(Transfer wanted)
{
    m_readTransfer = wanted;
    if (isPlugged())
        node().inputTransferChanged();
}

void EmulatedScale::sendReport(std::span<const std::uint8_t> report)
{
    node().deliver(report);
}

void EmulatedScale::sendReadings(int count)
{
    for (int sent = 0; sent < count; ++sent)
        sendReport(model.reading());
}

void EmulatedScale::unplugInRead()
{
    if (node().isReadPending())
        unplug();
    else
        m_unplugRequest = UnplugRequest::InRead;
}

// A program that waits for readiness does not ask for a report before there is one.
void EmulatedScale::awaitReader()
{
    constexpr guint untilItWaits = 100; // milliseconds
    const auto goAway = [](gpointer scale) -> gboolean {
        static_cast<EmulatedScale *>(scale)->readPending();
        return G_SOURCE_REMOVE;
    };
    if (m_unplugRequest == UnplugRequest::InRead)
        g_timeout_add(untilItWaits, goAway, this);
}

HidrawDevice::Transfer EmulatedScale::receiveFeatureReport(std::span<const std::uint8_t> report)
{
    if (m_featureTransfer == Transfer::Failed)
        return Transfer::Failed;
    log.record(report);
    if (m_polls == Polls::Answered || !ScaleModel::isPoll(report)) {
        const auto answer = model.receive(report);
        if (answer && m_lostAnswers > 0)
            --m_lostAnswers;
        else if (answer)
            sendReport(*answer);
    } else if (m_polls == Polls::Garbled) {
        sendReport(garbage());
    } else {
        awaitReader();
    }
    return Transfer::Done;
}

ScaleModel::InputReport EmulatedScale::garbage()
{
    ScaleModel::InputReport report = {};
    for (std::uint8_t &byte : report)
        byte = static_cast<std::uint8_t>(random() >> 8);
    return report;
}

void EmulatedScale::readPending()
{
    if (m_unplugRequest == UnplugRequest::InRead)
        unplug();
}

std::string stateText(const EmulatedScale &scale)
{
    const ScaleModel &model = scale.model;
    const auto buttonText = [](ScaleModel::Button button) {
        return button == ScaleModel::Button::Pressed ? "pressed" : "released";
    };
    std::string text = scale.isPlugged() ? "plugged=yes" : "plugged=no";
    text += " node=" + scale.nodePath();
    text += model.power() == ScaleModel::Power::On ? " power=on" : " power=off";
    text += std::string(" tare=") + buttonText(model.tareButton());
    text += std::string(" hold=") + buttonText(model.holdButton());
    text += " unit=" + std::string(unitName(model.type(), model.unit()));
    text += model.type() == ScaleModel::Type::PackedDecimal ? " type=0" : " type=1";
    text +=
        model.capacity() == ScaleModel::Capacity::High ? " capacity=high" : " capacity=ordinary";
    text += " load=" + std::to_string(model.load());
    text += " tare-weight=" + std::to_string(model.tare());
    text += " net=" + std::to_string(model.net());
    return text;
}
