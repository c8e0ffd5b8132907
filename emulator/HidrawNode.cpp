// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/HidrawNode.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace {

/// The kernel's ring of 64 holds one report less; a report that finds it full is lost.
constexpr std::size_t queueCapacity = 63;

mode_t modeFor(Permission permission)
{
    return permission == Permission::Granted ? 0666 : 0;
}

} // namespace

HidrawNode::HidrawNode(std::string path, Permission permission, HidrawDevice &device)
    : m_path(std::move(path))
    , m_permission(permission)
    , m_device(device)
    , m_unclaimed(std::make_shared<ReadinessPipe>(m_path, modeFor(m_permission)))
{
}

HidrawNode::~HidrawNode()
{
    for (const Handle &handle : m_handles)
        release(handle);
}

// Every open() gets a pipe of its own, because every handle has a queue of its own.
void HidrawNode::clientConnected(UMockdevIoctlClient *client)
{
    const std::shared_ptr<ReadinessPipe> pipe = m_unclaimed;
    const auto claim = pipe->claim([this, identity = pipe.get()] { forget(identity); });
    m_unclaimed = std::make_shared<ReadinessPipe>(m_path, modeFor(m_permission));
    if (claim == ReadinessPipe::Claim::Opened) {
        m_lastClaimed = pipe;
        add(client, pipe);
    }
}

bool HidrawNode::owns(UMockdevIoctlClient *client) const
{
    return std::any_of(m_handles.begin(), m_handles.end(),
                       [client](const Handle &handle) { return handle.client == client; });
}

bool HidrawNode::adopt(UMockdevIoctlClient *client)
{
    std::shared_ptr<ReadinessPipe> pipe = m_lastClaimed.lock();
    if (!pipe)
        return false;
    add(client, std::move(pipe));
    return true;
}

void HidrawNode::add(UMockdevIoctlClient *client, std::shared_ptr<ReadinessPipe> pipe)
{
    g_object_ref(client);
    m_handles.push_back({client, std::move(pipe), {}, false});
    updateReadiness(m_handles.back().pipe.get());
    m_device.opened();
}

void HidrawNode::forget(const ReadinessPipe *pipe)
{
    m_handles.remove_if([pipe](const Handle &handle) {
        if (handle.pipe.get() != pipe)
            return false;
        release(handle);
        return true;
    });
}

// A request that its program did not live to see answered keeps the library's stream open, and
// the library complains when it loses a client like that.
void HidrawNode::release(const Handle &handle)
{
    if (!handle.waiting)
        g_object_unref(handle.client);
}

HidrawNode::Handle *HidrawNode::find(UMockdevIoctlClient *client)
{
    const auto found =
        std::find_if(m_handles.begin(), m_handles.end(),
                     [client](const Handle &handle) { return handle.client == client; });
    return found == m_handles.end() ? nullptr : &*found;
}

void HidrawNode::featureReportSent(UMockdevIoctlClient *client,
                                   std::span<const std::uint8_t> report)
{
    if (m_presence == Presence::Gone)
        umockdev_ioctl_client_complete(client, -1, ENODEV);
    else if (report.size() < 2) // The kernel wants more than the report number.
        umockdev_ioctl_client_complete(client, -1, EINVAL);
    else if (m_device.receiveFeatureReport(report.subspan(1)) == HidrawDevice::Transfer::Failed)
        umockdev_ioctl_client_complete(client, -1, EIO);
    else
        umockdev_ioctl_client_complete(client, static_cast<glong>(report.size()), 0);
}

void HidrawNode::outputReportSent(UMockdevIoctlClient *client, std::span<const std::uint8_t> report)
{
    if (m_presence == Presence::Gone)
        umockdev_ioctl_client_complete(client, -1, ENODEV);
    else if (m_device.receiveOutputReport(report) == HidrawDevice::Transfer::Failed)
        umockdev_ioctl_client_complete(client, -1, EPIPE); // of an endpoint that it does not have
    else
        umockdev_ioctl_client_complete(client, static_cast<glong>(report.size()), 0);
}

void HidrawNode::readRequested(UMockdevIoctlClient *client)
{
    Handle *handle = find(client);
    handle->waiting = true;
    serveRead(*handle);
    if (handle->waiting)
        m_device.readPending();
}

bool HidrawNode::readsFail() const
{
    return m_presence == Presence::Gone ||
           m_device.inputTransfer() == HidrawDevice::Transfer::Failed;
}

void HidrawNode::serveRead(Handle &handle)
{
    if (!handle.waiting)
        return;
    if (readsFail()) {
        fail(handle, EIO);
    } else if (!handle.queue.empty()) {
        const Report report = std::move(handle.queue.front());
        handle.queue.pop_front();
        updateReadiness(handle.pipe.get());
        complete(handle, report);
    }
}

void HidrawNode::complete(Handle &handle, const Report &report)
{
    handle.waiting = false;
    UMockdevIoctlData *buffer = umockdev_ioctl_client_get_arg(handle.client);
    const auto length = std::min(report.size(), static_cast<std::size_t>(buffer->data_len));
    std::copy_n(report.begin(), length, buffer->data); // What is longer than the buffer is lost.
    umockdev_ioctl_client_complete(handle.client, static_cast<glong>(length), 0);
}

void HidrawNode::fail(Handle &handle, int error)
{
    handle.waiting = false;
    umockdev_ioctl_client_complete(handle.client, -1, error);
}

void HidrawNode::deliver(std::span<const std::uint8_t> report)
{
    for (Handle &handle : m_handles) {
        if (handle.queue.size() == queueCapacity)
            continue;
        handle.queue.emplace_back(report.begin(), report.end());
        updateReadiness(handle.pipe.get());
        serveRead(handle);
    }
}

void HidrawNode::updateReadiness(const ReadinessPipe *pipe)
{
    const bool hasReport =
        std::any_of(m_handles.begin(), m_handles.end(), [pipe](const Handle &each) {
            return each.pipe.get() == pipe && !each.queue.empty();
        });
    const auto readiness = hasReport || readsFail() ? ReadinessPipe::Readiness::Readable
                                                    : ReadinessPipe::Readiness::Nothing;
    for (const Handle &handle : m_handles) {
        if (handle.pipe.get() == pipe)
            handle.pipe->set(readiness);
    }
}

void HidrawNode::inputTransferChanged()
{
    for (Handle &handle : m_handles) {
        updateReadiness(handle.pipe.get());
        serveRead(handle);
    }
}

void HidrawNode::setPermission(Permission wanted)
{
    m_permission = wanted;
    chmod(m_path.c_str(), modeFor(wanted));
}

void HidrawNode::interruptReads()
{
    for (Handle &handle : m_handles) {
        if (handle.waiting)
            fail(handle, EINTR);
    }
}

void HidrawNode::vanish()
{
    m_presence = Presence::Gone;
    m_unclaimed.reset();
    inputTransferChanged();
}

bool HidrawNode::isReadPending() const
{
    return std::any_of(m_handles.begin(), m_handles.end(),
                       [](const Handle &handle) { return handle.waiting; });
}
