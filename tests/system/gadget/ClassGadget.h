// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/system/gadget/UsbGadget.h"

#include <vector>

/// A scale of the class for points of sale behind a USB plug: it sends by itself, and obeys its
/// zero.
class ClassGadget
{
public:
    using Report = std::vector<std::uint8_t>;

    /// @param name of its directory, and of the product
    ClassGadget(const std::string &name, const std::string &deviceController);
    ~ClassGadget();
    ClassGadget(const ClassGadget &) = delete;
    ClassGadget &operator=(const ClassGadget &) = delete;

    void plug();
    void unplug();
    /// From here on these are sent in turn.
    void say(std::vector<Report> wanted);
    /// Output reports received so far, with their numbers.
    const std::vector<Report> &written() const { return received; }

private:
    void receive();
    void send();
    void closeNode();

    UsbGadget gadget;
    int descriptor = -1;
    unsigned watch = 0;
    unsigned timer = 0;
    std::vector<Report> reports;
    std::size_t next = 0;
    std::vector<Report> received;
};
