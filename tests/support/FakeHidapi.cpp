// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeHidapi.h"

#include <algorithm>
#include <hidapi.h>

struct hid_device_
{
};

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
    return new hid_device_;
}

void hid_close(hid_device *device)
{
    --FakeHidapi::instance().openHandles;
    delete device;
}

int hid_send_feature_report(hid_device *, const unsigned char *data, size_t length)
{
    FakeHidapi &hidapi = FakeHidapi::instance();
    std::array<std::uint8_t, 9> report{};
    std::copy_n(data, std::min(length, report.size()), report.begin());
    hidapi.sent.push_back(report);
    if (hidapi.duringSend)
        hidapi.duringSend();
    return hidapi.sendFails ? -1 : static_cast<int>(length);
}

int hid_read(hid_device *, unsigned char *data, size_t length)
{
    FakeHidapi &hidapi = FakeHidapi::instance();
    if (hidapi.reports.empty())
        return -1;
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
