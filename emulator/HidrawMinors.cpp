// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/HidrawMinors.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <glib.h>
#include <stdexcept>

namespace {

constexpr int minorCount = 64;

std::string nodePath(int minor)
{
    return "/dev/hidraw" + std::to_string(minor);
}

} // namespace

/// One number with the node that has it now and those that programs still hold open.
class HidrawMinors::Slot : public HidrawRequests
{
public:
    Slot(UMockdevTestbed *testbed, int minor)
        : m_ioctl(testbed, nodePath(minor), *this)
    {
    }

    bool isFree()
    {
        forgetClosed();
        return !m_present && m_departed.empty();
    }

    HidrawNode &arrive(const std::string &path, Permission permission, HidrawDevice &device)
    {
        m_descriptorSize = device.reportDescriptorSize();
        m_present = std::make_unique<HidrawNode>(path, permission, device);
        return *m_present;
    }

    void depart()
    {
        m_present->vanish();
        m_departed.push_back(std::move(m_present));
    }

    template <typename Visitor> void visit(Visitor visitor) const
    {
        if (m_present)
            visitor(*m_present);
        for (const auto &node : m_departed)
            visitor(*node);
    }

private:
    void clientConnected(UMockdevIoctlClient *client) override
    {
        if (m_present)
            m_present->clientConnected(client);
    }

    // Answered even when the device has just gone, unlike the kernel: hidapi 0.13.1 uses freed
    // memory when this fails between its open() and here, and where the kernel takes a
    // microsecond, the way to this process takes long enough for that to happen often.
    void descriptorSizeRequested(UMockdevIoctlClient *client, UMockdevIoctlData *size) override
    {
        ownerOf(client);
        umockdev_ioctl_data_update(size, 0, reinterpret_cast<guint8 *>(&m_descriptorSize),
                                   sizeof m_descriptorSize);
        umockdev_ioctl_client_complete(client, 0, 0);
    }

    void featureReportSent(UMockdevIoctlClient *client,
                           const std::vector<std::uint8_t> &report) override
    {
        if (HidrawNode *node = ownerOf(client))
            node->featureReportSent(client, report);
        else
            umockdev_ioctl_client_complete(client, -1, ENODEV);
    }

    void outputReportSent(UMockdevIoctlClient *client,
                          const std::vector<std::uint8_t> &report) override
    {
        if (HidrawNode *node = ownerOf(client))
            node->outputReportSent(client, report);
        else
            umockdev_ioctl_client_complete(client, -1, ENODEV);
    }

    void readRequested(UMockdevIoctlClient *client) override
    {
        if (HidrawNode *node = ownerOf(client))
            node->readRequested(client);
        else
            umockdev_ioctl_client_complete(client, -1, EIO);
    }

    HidrawNode *ownerOf(UMockdevIoctlClient *client)
    {
        HidrawNode *owner = nullptr;
        visit([&](HidrawNode &node) {
            if (node.owns(client))
                owner = &node;
        });
        if (owner == nullptr && m_present && m_present->adopt(client))
            owner = m_present.get();
        return owner;
    }

    void forgetClosed()
    {
        std::erase_if(m_departed, [](const auto &node) { return node->openHandles() == 0; });
    }

    HidrawIoctl m_ioctl;
    std::uint32_t m_descriptorSize = 0;
    std::unique_ptr<HidrawNode> m_present;
    std::vector<std::unique_ptr<HidrawNode>> m_departed;
};

HidrawMinors::HidrawMinors(UMockdevTestbed *testbed)
    : m_testbed(testbed)
{
    g_autofree gchar *root = umockdev_testbed_get_root_dir(testbed);
    m_devDirectory = std::string(root) + "/dev";
    std::filesystem::create_directories(m_devDirectory);
}

HidrawMinors::~HidrawMinors() = default;

HidrawMinors::Slot &HidrawMinors::slot(int minor)
{
    std::unique_ptr<Slot> &found = m_slots[minor];
    if (!found)
        found = std::make_unique<Slot>(m_testbed, minor);
    return *found;
}

int HidrawMinors::lowestFree()
{
    for (int minor = 0; minor < minorCount; ++minor) {
        if (slot(minor).isFree())
            return minor;
    }
    throw std::runtime_error("every hidraw number is taken");
}

HidrawNode &HidrawMinors::plug(int minor, Permission permission, HidrawDevice &device)
{
    const std::string path = m_devDirectory + "/hidraw" + std::to_string(minor);
    return slot(minor).arrive(path, permission, device);
}

void HidrawMinors::unplug(int minor)
{
    slot(minor).depart();
}

int HidrawMinors::openHandles(const HidrawDevice &device) const
{
    int count = 0;
    for (const auto &[minor, slot] : m_slots) {
        slot->visit([&](const HidrawNode &node) {
            if (node.isFor(device))
                count += node.openHandles();
        });
    }
    return count;
}

void HidrawMinors::interruptReads()
{
    for (const auto &[minor, slot] : m_slots)
        slot->visit([](HidrawNode &node) { node.interruptReads(); });
}
