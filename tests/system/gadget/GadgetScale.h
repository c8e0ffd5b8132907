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

    enum class Form {
        Plain,
        Wide,      ///< its reports are of 64 bytes
        Composite, ///< its second interface is a mouse
    };

    void plug();
    void unplug();
    /// Of the next plug.
    void setForm(Form form);
    void setPolls(Polls wanted) { polls = wanted; }

    /// How polls are answered. The defaults are a scale in good order.
    struct Manner
    {
        unsigned delay = 0; ///< milliseconds
        int copies = 1;
        /// Bytes: less than 8 cut the answer, more fill it up with zeroes. The kernel takes no more
        /// than the gadget's longest report.
        std::size_t length = ScaleModel::InputReport().size();
    };
    void setManner(const Manner &wanted) { manner = wanted; }
    Manner currentManner() const { return manner; }

    /// @param milliseconds between two reports that nobody has asked for; 0: there are none
    void sendUnasked(unsigned milliseconds);

    ScaleModel model;
    FeatureLog log;

private:
    void receive();
    void answer(const ScaleModel::InputReport &report);
    void sendLater(const ScaleModel::InputReport &report, unsigned milliseconds);
    void send(const ScaleModel::InputReport &report) const;
    void closeNode();

    std::string name;
    UsbGadget gadget;
    Polls polls = Polls::Answered;
    int descriptor = -1;
    Manner manner;
    unsigned watch = 0;
    unsigned unaskedTimer = 0;
};
