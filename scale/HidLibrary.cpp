// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "scale/HidLibrary.h"

#include <hidapi.h>
#include <utility>

HidHandle::HidHandle(hid_device_ *openDevice, const QString &systemPath)
    : device(openDevice)
    , path(systemPath)
{
}

HidHandle::~HidHandle()
{
    close();
}

int HidHandle::sendFeatureReport(std::span<const std::uint8_t> report)
{
    if (device == nullptr)
        return -1;
    return hid_send_feature_report(device, report.data(), report.size());
}

int HidHandle::read(std::span<std::uint8_t> buffer)
{
    if (device == nullptr)
        return -1;
    return hid_read(device, buffer.data(), buffer.size());
}

void HidHandle::close()
{
    if (device != nullptr)
        hid_close(std::exchange(device, nullptr));
}

HidLibrary::HidLibrary(RemovalHook hook)
    : removalHook(std::move(hook))
{
}

std::shared_ptr<HidHandle> HidLibrary::open(const QString &node, const QString &systemPath)
{
    // The same as hid_open does after its search by identity. That search can crash when a device
    // vanishes under it (hidapi 0.13.1), and a bouncing plug is enough for that. What remains is a
    // device that vanishes in the microseconds between the library's open and its first request,
    // where the library uses freed memory; only a newer library mends that.
    hid_device *device = hid_open_path(node.toUtf8().constData());
    if (device == nullptr)
        return nullptr;
    hookArmed = true;
    openHandles.push_back(std::make_shared<HidHandle>(device, systemPath));
    return openHandles.back();
}

QString HidLibrary::lastError() const
{
    return QString::fromWCharArray(hid_error(nullptr));
}

void HidLibrary::deviceRemoved(const QString &systemPath)
{
    if (!hookArmed)
        return;
    removalHook();
    std::erase_if(openHandles, [&](const std::shared_ptr<HidHandle> &handle) {
        if (handle->systemPath() != systemPath)
            return false;
        handle->close();
        return true;
    });
}
