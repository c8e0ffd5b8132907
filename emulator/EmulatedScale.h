// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/FeatureLog.h"
#include "emulator/PluggableDevice.h"
#include "emulator/ScaleModel.h"

#include <random>
#include <string>

/// The scale on its port, with whatever can go wrong between it and the host.
class EmulatedScale : public PluggableDevice
{
public:
    EmulatedScale(Testbed &testbed, std::string port);

    enum class Polls {
        Answered,
        Unanswered, ///< reads stay blocked
        Garbled,    ///< answered with eight random bytes, the same ones in every run
    };

    void plug() override;
    void unplug() override;

    void setPolls(Polls wanted);
    /// So many polls from now on are obeyed, and their answers lost on the way.
    void loseAnswers(int count) { m_lostAnswers = count; }
    void setFeatureTransfer(Transfer wanted) { m_featureTransfer = wanted; }
    void setInputTransfer(Transfer wanted);
    void sendReport(std::span<const std::uint8_t> report);
    /// What a poll would be answered now, unasked, @p count times.
    void sendReadings(int count);
    /// As soon as a program waits for a report; now, if one does.
    void unplugInRead();

    ScaleModel model;
    FeatureLog log;

private:
    enum class UnplugRequest { None, InRead };

    Transfer receiveFeatureReport(std::span<const std::uint8_t> report) override;
    Transfer inputTransfer() const override { return m_readTransfer; }
    void readPending() override;
    ScaleModel::InputReport garbage();
    void awaitReader();

    Polls m_polls = Polls::Answered;
    int m_lostAnswers = 0;
    Transfer m_featureTransfer = Transfer::Done;
    Transfer m_readTransfer = Transfer::Done;
    UnplugRequest m_unplugRequest = UnplugRequest::None;
    std::minstd_rand m_random;
};

/// One line of KEY=VALUE pairs.
std::string stateText(const EmulatedScale &scale);
