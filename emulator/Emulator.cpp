// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/Emulator.h"

#include "emulator/ClassScaleDescriptors.h"
#include "emulator/MouseReportDescriptor.h"
#include "emulator/ProgramDirectory.h"
#include "emulator/ScaleReportDescriptor.h"
#include "scale/ScaleIdentity.h"

namespace {

HidIdentity mouseIdentity()
{
    return {"1-3", 0x1209, 0x0001, "Generic", "Optical Mouse", mouseReportDescriptor};
}

HidIdentity strangerIdentity()
{
    constexpr std::uint16_t otherProductId = 0xA01C;
    return {"1-4", scaleVendorId, otherProductId, "Kelvane", "Card Reader", scaleReportDescriptor};
}

/// Report 2 of the class, its bit for zero.
const ClassScale::Report zeroReport{2, 2};

HidIdentity classIdentity(const char *port, const char *product)
{
    constexpr std::uint16_t vendorId = 0x1209; // for tests, by pid.codes
    constexpr std::uint16_t productId = 0x0005;
    return {port, vendorId, productId, "Example", product, classScaleDescriptor};
}

HidIdentity oddIdentity()
{
    return {"1-7", 0x1209, 0x0006, "Example", "Odd Scale", oddScaleDescriptor};
}

void appendWord(std::string &list, const std::string &word, char separator)
{
    if (!list.empty())
        list += separator;
    list += word;
}

} // namespace

Emulator::Emulator()
    : scale(testbed, "1-1")
    , second(testbed, "1-2")
    , mouse(testbed, mouseIdentity())
    , stranger(testbed, strangerIdentity())
    , classScale(testbed, classIdentity("1-5", "Parcel Scale"), zeroReport)
    , otherClassScale(testbed, classIdentity("1-6", "Second Parcel Scale"), zeroReport)
    , oddScale(testbed, oddIdentity(), {})
{
}

Environment Emulator::environment() const
{
    Environment result = currentEnvironment();
    result["UMOCKDEV_DIR"] = testbed.directory();
    appendWord(result["LD_PRELOAD"], besideThisProgram("postal-scale-emulator-guard.so"), ':');
    appendWord(result["LD_PRELOAD"], "libumockdev-preload.so.0", ':');
    // A program built with the address sanitizer wants its library to come first, unless told not
    // to look; to other programs this means nothing.
    appendWord(result["ASAN_OPTIONS"], "verify_asan_link_order=0", ':');
    return result;
}

void Emulator::raiseInChild(int signal)
{
    if (!child)
        return;
    child->raise(signal);
    if (child->isSignalPending(signal))
        testbed.interruptReads();
}
