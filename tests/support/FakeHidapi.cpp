// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeHidapi.h"

#include <algorithm>
#include <hidapi.h>

/// Never freed: a handle that is used after it was closed is noticed.
struct hid_device_
{
    bool open = true;
};

namespace {

bool isOpen(const hid_device *device)
{
    if (!device->open)
        ++FakeHidapi::instance().misuses;
    return device->open;
}

} // namespace

FakeHidapi &FakeHidapi::instance()
{
    static FakeHidapi hidapi;
    return hidapi;
}

extern "C" {

hid_device *hid_open_path(const char *path)
{
    FakeHidapi &hidapi = FakeHidapi::instance();
    if (hidapi.openFails)
        return nullptr;
    hidapi.opened.emplace_back(path);
    ++hidapi.openHandles;
    static std::deque<hid_device_> handles;
    return &handles.emplace_back();
}

void hid_close(hid_device *device)
{
    if (!isOpen(device))
        return;
    device->open = false;
    --FakeHidapi::instance().openHandles;
}

int hid_send_feature_report(hid_device *device, const unsigned char *data, size_t length)
{
    if (!isOpen(device))
        return -1;
    FakeHidapi &hidapi = FakeHidapi::instance();
    std::array<std::uint8_t, 9> report{};
    std::copy_n(data, std::min(length, report.size()), report.begin());
    hidapi.sent.push_back(report);
    if (hidapi.duringSend)
        hidapi.duringSend();
    return hidapi.sendFails ? -1 : hidapi.sentBytes.value_or(static_cast<int>(length));
}

int hid_read_timeout(hid_device *device, unsigned char *data, size_t length, int milliseconds)
{
    FakeHidapi &hidapi = FakeHidapi::instance();
    if (!isOpen(device))
        return -1;
    ++(milliseconds > 0 ? hidapi.waits : hidapi.looks);
    if (!hidapi.readFails && hidapi.reports.empty() && hidapi.duringWait)
        hidapi.duringWait(milliseconds);
    if (hidapi.readFails)
        return -1;
    if (hidapi.reports.empty())
        return hidapi.duringWait ? 0 : -1;
    const std::vector<std::uint8_t> report = hidapi.reports.front();
    hidapi.reports.pop_front();
    const size_t count = std::min(length, report.size());
    std::copy_n(report.begin(), count, data);
    return static_cast<int>(count);
}

const wchar_t *hid_error(hid_device *)
{
    return L"fake failure";
}
}
