// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/FeatureLog.h"
#include "emulator/ScaleModel.h"
#include "tests/system/gadget/UsbGadget.h"

/// The scale behind a USB plug.
class GadgetScale
{
public:
    GadgetScale(const std::string &name, const std::string &deviceController);
    ~GadgetScale();
    GadgetScale(const GadgetScale &) = delete;
    GadgetScale &operator=(const GadgetScale &) = delete;

    enum class Polls { Answered, Unanswered };

    void plug();
    void unplug();
    void setPolls(Polls wanted) { polls = wanted; }

    ScaleModel model;
    FeatureLog log;

private:
    void receive();
    void answer(const ScaleModel::InputReport &report) const;
    void closeNode();

    UsbGadget gadget;
    Polls polls = Polls::Answered;
    int descriptor = -1;
    unsigned watch = 0;
};
