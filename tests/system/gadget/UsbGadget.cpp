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
    const fs::path english = gadget / "strings/0x409";
    fs::create_directory(english);
    writeAttribute(english / "manufacturer", identity.manufacturer);
    writeAttribute(english / "product", identity.product);
}

fs::path addHidFunction(const fs::path &gadget, const GadgetIdentity &identity)
{
    const fs::path function = gadget / ("functions/hid." + identity.name);
    fs::create_directory(function);
    // Without an output endpoint, the host sends its reports over the control pipe.
    writeNumber(function / "no_out_endpoint", 1);
    writeNumber(function / "report_length", identity.reportLength);
    writeAttribute(function / "report_desc",
                   {reinterpret_cast<const char *>(identity.reportDescriptor.data()),
                    identity.reportDescriptor.size()});
    return function;
}

} // namespace

UsbGadget::UsbGadget(const GadgetIdentity &identity, std::string deviceController)
    : directory(gadgets / identity.name)
    , controller(std::move(deviceController))
{
    fs::create_directory(directory);
    describe(directory, identity);
    function = addHidFunction(directory, identity);
    const fs::path configuration = directory / "configs/c.1";
    fs::create_directory(configuration);
    fs::create_directory_symlink(function, configuration / function.filename());
}

void UsbGadget::plug()
{
    if (plugged)
        throw std::logic_error("already plugged in");
    writeAttribute(directory / "UDC", controller);
    plugged = true;
}

void UsbGadget::unplug()
{
    if (!plugged)
        throw std::logic_error("not plugged in");
    writeAttribute(directory / "UDC", "\n");
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
