// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/GObjectPointer.h"

#include <cstdint>
#include <string>
#include <umockdev.h>
#include <vector>

/// What programs do with one /dev/hidrawN, told in order on the main thread.
///
/// A client is one open() of the node. Every request must be completed once, now or later, with
/// umockdev_ioctl_client_complete(); until then the program's call does not return.
class HidrawRequests
{
public:
    virtual ~HidrawRequests() = default;

    /// Also told when the open() failed, and before the program can make a request.
    virtual void clientConnected(UMockdevIoctlClient *client) = 0;
    /// HIDIOCGRDESCSIZE; the answer goes into @p size.
    virtual void descriptorSizeRequested(UMockdevIoctlClient *client, UMockdevIoctlData *size) = 0;
    /// HIDIOCSFEATURE; the first byte is the report number.
    virtual void featureReportSent(UMockdevIoctlClient *client,
                                   const std::vector<std::uint8_t> &report) = 0;
    /// A write; the first byte is the report number.
    virtual void outputReportSent(UMockdevIoctlClient *client,
                                  const std::vector<std::uint8_t> &report) = 0;
    virtual void readRequested(UMockdevIoctlClient *client) = 0;
};

/// Stands behind one device node of the testbed from its creation until the testbed is given up.
///
/// It is never taken back when the device is unplugged: a program that is just opening the node
/// would find the library's socket gone and be ended by the preloaded library.
class HidrawIoctl
{
public:
    HidrawIoctl(UMockdevTestbed *testbed, std::string node, HidrawRequests &requests);
    ~HidrawIoctl();
    HidrawIoctl(const HidrawIoctl &) = delete;
    HidrawIoctl &operator=(const HidrawIoctl &) = delete;

private:
    UMockdevTestbed *m_testbed;
    std::string m_node;
    GObjectPointer<UMockdevIoctlBase> m_handler;
};
