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
    Slot(UMockdevTestbed *owner, int minor)
        : ioctl(owner, nodePath(minor), *this)
    {
    }

    bool isFree()
    {
        forgetClosed();
        return !present && departed.empty();
    }

    HidrawNode &arrive(const std::string &path, Permission permission, HidrawDevice &device)
    {
        descriptorSize = device.reportDescriptorSize();
        present = std::make_unique<HidrawNode>(path, permission, device);
        return *present;
    }

    void depart()
    {
        present->vanish();
        departed.push_back(std::move(present));
    }

    template <typename Visitor> void visit(Visitor visitor) const
    {
        if (present)
            visitor(*present);
        for (const auto &node : departed)
            visitor(*node);
    }

private:
    void clientConnected(UMockdevIoctlClient *client) override
    {
        if (present)
            present->clientConnected(client);
    }

    // Answered even when the device has just gone, unlike the kernel: hidapi 0.13.1 uses freed
    // memory when this fails between its open() and here, and where the kernel takes a
    // microsecond, the way to this process takes long enough for that to happen often.
    void descriptorSizeRequested(UMockdevIoctlClient *client, UMockdevIoctlData *size) override
    {
        ownerOf(client);
        umockdev_ioctl_data_update(size, 0, reinterpret_cast<guint8 *>(&descriptorSize),
                                   sizeof descriptorSize);
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
        if (owner == nullptr && present && present->adopt(client))
            owner = present.get();
        return owner;
    }

    void forgetClosed()
    {
        std::erase_if(departed, [](const auto &node) { return node->openHandles() == 0; });
    }

    HidrawIoctl ioctl;
    std::uint32_t descriptorSize = 0;
    std::unique_ptr<HidrawNode> present;
    std::vector<std::unique_ptr<HidrawNode>> departed;
};

HidrawMinors::HidrawMinors(UMockdevTestbed *owner)
    : testbed(owner)
{
    g_autofree gchar *root = umockdev_testbed_get_root_dir(testbed);
    devDirectory = std::string(root) + "/dev";
    std::filesystem::create_directories(devDirectory);
}

HidrawMinors::~HidrawMinors() = default;

HidrawMinors::Slot &HidrawMinors::slot(int minor)
{
    std::unique_ptr<Slot> &found = slots[minor];
    if (!found)
        found = std::make_unique<Slot>(testbed, minor);
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
    const std::string path = devDirectory + "/hidraw" + std::to_string(minor);
    return slot(minor).arrive(path, permission, device);
}

void HidrawMinors::unplug(int minor)
{
    slot(minor).depart();
}

int HidrawMinors::openHandles(const HidrawDevice &device) const
{
    int count = 0;
    for (const auto &[minor, slot] : slots) {
        slot->visit([&](const HidrawNode &node) {
            if (node.isFor(device))
                count += node.openHandles();
        });
    }
    return count;
}

void HidrawMinors::interruptReads()
{
    for (const auto &[minor, slot] : slots)
        slot->visit([](HidrawNode &node) { node.interruptReads(); });
}
