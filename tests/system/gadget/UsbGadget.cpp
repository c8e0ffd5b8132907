// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/system/gadget/UsbGadget.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

const fs::path gadgets = "/sys/kernel/config/usb_gadget";

// In a gadget's directory.
constexpr auto english = "strings/0x409";
constexpr auto configuration = "configs/c.1";
/// Named by function and instance; also the links of the configuration to them. The host numbers
/// the interfaces in the order in which they are made.
constexpr auto firstFunction = "hid.first";
constexpr auto secondFunction = "hid.second";

/// The kernel takes an attribute in one write and answers by that write's result.
void writeAttribute(const fs::path &attribute, std::string_view value)
{
    const int descriptor = open(attribute.c_str(), O_WRONLY | O_CLOEXEC);
    const ssize_t written = descriptor < 0 ? -1 : write(descriptor, value.data(), value.size());
    const int error = errno;
    if (descriptor >= 0)
        close(descriptor);
    if (written != static_cast<ssize_t>(value.size()))
        throw std::system_error(error, std::generic_category(), attribute);
}

void writeNumber(const fs::path &attribute, int value)
{
    writeAttribute(attribute, std::to_string(value));
}

void describe(const fs::path &gadget, const GadgetIdentity &identity)
{
    writeNumber(gadget / "idVendor", identity.vendorId);
    writeNumber(gadget / "idProduct", identity.productId);
    fs::create_directory(gadget / english);
    writeAttribute(gadget / english / "manufacturer", identity.manufacturer);
    writeAttribute(gadget / english / "product", identity.product);
}

fs::path addHidFunction(const fs::path &gadget, const char *name, int reportLength,
                        std::span<const std::uint8_t> reportDescriptor)
{
    const fs::path function = gadget / "functions" / name;
    fs::create_directory(function);
    // Without an output endpoint, the host sends its reports over the control pipe.
    writeNumber(function / "no_out_endpoint", 1);
    writeNumber(function / "report_length", reportLength);
    writeAttribute(
        function / "report_desc",
        {reinterpret_cast<const char *>(reportDescriptor.data()), reportDescriptor.size()});
    fs::create_directory_symlink(function, gadget / configuration / name);
    return function;
}

} // namespace

UsbGadget::UsbGadget(GadgetIdentity wanted, std::string deviceController)
    : identity(std::move(wanted))
    , directory(gadgets / identity.name)
    , controller(std::move(deviceController))
{
}

// With each plug: the kernel has no more than four HID functions at a time.
void UsbGadget::make()
{
    fs::create_directory(directory);
    describe(directory, identity);
    fs::create_directory(directory / configuration);
    function =
        addHidFunction(directory, firstFunction, identity.reportLength, identity.reportDescriptor);
    if (!identity.secondDescriptor.empty())
        addHidFunction(directory, secondFunction, identity.reportLength, identity.secondDescriptor);
}

void UsbGadget::remove() const
{
    for (const auto *name : {firstFunction, secondFunction}) {
        fs::remove(directory / configuration / name);
        fs::remove(directory / "functions" / name);
    }
    fs::remove(directory / configuration);
    fs::remove(directory / english);
    fs::remove(directory);
}

void UsbGadget::plug()
{
    if (plugged)
        throw std::logic_error("already plugged in");
    make();
    writeAttribute(directory / "UDC", controller);
    plugged = true;
}

void UsbGadget::unplug()
{
    if (!plugged)
        throw std::logic_error("not plugged in");
    writeAttribute(directory / "UDC", "\n");
    remove();
    plugged = false;
}

fs::path UsbGadget::node() const
{
    int major = 0;
    int minor = 0;
    char colon = 0;
    std::ifstream(function / "dev") >> major >> colon >> minor;
    return "/dev/hidg" + std::to_string(minor);
}
