// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/HidrawIoctl.h"
#include "emulator/ReadinessPipe.h"

#include <deque>
#include <list>
#include <memory>
#include <span>

/// Whether programs may open the node; root always may.
enum class Permission { Granted, Denied };

/// The device's side of a node.
class HidrawDevice
{
public:
    virtual ~HidrawDevice() = default;

    enum class Transfer { Done, Failed };

    /// Without the report number.
    virtual Transfer receiveFeatureReport(std::span<const std::uint8_t> report) = 0;
    /// With the report number in front.
    virtual Transfer receiveOutputReport(std::span<const std::uint8_t> report) = 0;
    virtual Transfer inputTransfer() const = 0;
    virtual void opened() = 0;
    /// A program waits for a report that is not there yet. The device may be unplugged from here.
    virtual void readPending() = 0;
    virtual std::uint32_t reportDescriptorSize() const = 0;
};

/// One /dev/hidrawN from plug to unplug and on until the last program has closed it, with the
/// queues that the kernel keeps for every open handle.
class HidrawNode
{
public:
    HidrawNode(std::string path, Permission permission, HidrawDevice &device);
    ~HidrawNode();
    HidrawNode(const HidrawNode &) = delete;
    HidrawNode &operator=(const HidrawNode &) = delete;

    void clientConnected(UMockdevIoctlClient *client);
    bool owns(UMockdevIoctlClient *client) const;
    /// A client that opened the node in the same moment as another one.
    bool adopt(UMockdevIoctlClient *client);

    void featureReportSent(UMockdevIoctlClient *client, std::span<const std::uint8_t> report);
    void outputReportSent(UMockdevIoctlClient *client, std::span<const std::uint8_t> report);
    void readRequested(UMockdevIoctlClient *client);

    /// To every open handle, as an interrupt transfer does.
    void deliver(std::span<const std::uint8_t> report);
    /// To be called when the outcome of HidrawDevice::inputTransfer() has changed.
    void inputTransferChanged();
    void setPermission(Permission wanted);
    /// Ends waiting reads as an arriving signal does.
    void interruptReads();
    /// The device is gone: waiting reads fail, all later calls too. The path is left alone.
    void vanish();

    bool isFor(const HidrawDevice &candidate) const { return &m_device == &candidate; }
    int openHandles() const { return static_cast<int>(m_handles.size()); }
    bool isReadPending() const;

private:
    using Report = std::vector<std::uint8_t>;

    struct Handle
    {
        UMockdevIoctlClient *client = nullptr;
        std::shared_ptr<ReadinessPipe> pipe;
        std::deque<Report> queue;
        bool waiting = false;
    };

    enum class Presence { Present, Gone };

    Handle *find(UMockdevIoctlClient *client);
    void add(UMockdevIoctlClient *client, std::shared_ptr<ReadinessPipe> pipe);
    void forget(const ReadinessPipe *pipe);
    static void release(const Handle &handle);
    void serveRead(Handle &handle);
    void complete(Handle &handle, const Report &report);
    void fail(Handle &handle, int error);
    void updateReadiness(const ReadinessPipe *pipe);
    bool readsFail() const;

    std::string m_path;
    Permission m_permission;
    HidrawDevice &m_device;
    Presence m_presence = Presence::Present;
    std::shared_ptr<ReadinessPipe> m_unclaimed; ///< what the next open() finds
    std::weak_ptr<ReadinessPipe> m_lastClaimed;
    std::list<Handle> m_handles;
};
