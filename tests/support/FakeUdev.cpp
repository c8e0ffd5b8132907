// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/support/FakeUdev.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <deque>
#include <libudev.h>
#include <memory>
#include <sys/eventfd.h>
#include <unistd.h>
#include <vector>

struct udev_list_entry
{
    std::string name;
    udev_list_entry *next = nullptr;
};

struct udev_device
{
    fakeudev::Device device;
    std::string action;
    std::string path;
    std::string node;
    std::string identity;
    bool parentsGone = false;
};

struct udev_enumerate
{
    std::deque<udev_list_entry> entries;
};

namespace {

struct World
{
    std::vector<fakeudev::Device> present;
    std::deque<udev_device> events;
    bool overflow = false;
    fakeudev::Failing failing;
    int descriptor = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
};

World &world()
{
    static World instance;
    return instance;
}

std::string pathOf(const std::string &name)
{
    return "/sys/class/hidraw/" + name;
}

udev_device describe(const fakeudev::Device &device, const std::string &action)
{
    char identity[32];
    std::snprintf(identity, sizeof identity, "0003:%08X:%08X", device.vendor, device.product);
    return {
        device, action, pathOf(device.name), "/dev/" + device.name, identity, action == "remove"};
}

void wake()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(world().descriptor, &one, sizeof one);
}

void calm()
{
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = read(world().descriptor, &count, sizeof count);
}

/// A socket stays readable until its last message is taken.
void wakeForTheRest()
{
    if (!world().events.empty())
        wake();
}

} // namespace

void fakeudev::reset()
{
    world().present.clear();
    world().events.clear();
    world().overflow = false;
    world().failing = {};
    calm();
}

fakeudev::Failing &fakeudev::failing()
{
    return world().failing;
}

void fakeudev::place(const Device &device)
{
    world().present.push_back(device);
}

void fakeudev::plug(const Device &device)
{
    place(device);
    announce(device, "add");
}

void fakeudev::unplug(const std::string &name)
{
    const auto found = std::find_if(world().present.begin(), world().present.end(),
                                    [&](const Device &device) { return device.name == name; });
    if (found == world().present.end())
        return;
    const Device device = *found;
    world().present.erase(found);
    announce(device, "remove");
}

void fakeudev::announce(const Device &device, const std::string &action)
{
    world().events.push_back(describe(device, action));
    wake();
}

void fakeudev::announceLate(const std::string &name)
{
    for (Device &device : world().present) {
        if (device.name != name || device.isInitialized)
            continue;
        device.isInitialized = true;
        announce(device, "add");
    }
}

void fakeudev::overflow()
{
    world().overflow = true;
    world().events.clear();
    wake();
}

extern "C" {

udev *udev_new()
{
    return reinterpret_cast<udev *>(&world());
}

udev *udev_unref(udev *)
{
    return nullptr;
}

udev_monitor *udev_monitor_new_from_netlink(udev *, const char *)
{
    return world().failing.monitor ? nullptr : reinterpret_cast<udev_monitor *>(&world());
}

udev_monitor *udev_monitor_unref(udev_monitor *)
{
    return nullptr;
}

int udev_monitor_filter_add_match_subsystem_devtype(udev_monitor *, const char *, const char *)
{
    return world().failing.filter ? -ENOMEM : 0;
}

int udev_monitor_enable_receiving(udev_monitor *)
{
    return world().failing.receiving ? -EPERM : 0;
}

int udev_monitor_get_fd(udev_monitor *)
{
    return world().descriptor;
}

udev_device *udev_monitor_receive_device(udev_monitor *)
{
    calm();
    if (world().overflow) {
        world().overflow = false;
        wakeForTheRest();
        errno = ENOBUFS;
        return nullptr;
    }
    if (world().failing.receive && !world().events.empty()) {
        world().events.pop_front();
        wakeForTheRest();
        errno = EINVAL;
        return nullptr;
    }
    if (world().events.empty()) {
        errno = EAGAIN;
        return nullptr;
    }
    auto *device = new udev_device(world().events.front());
    world().events.pop_front();
    return device;
}

udev_enumerate *udev_enumerate_new(udev *)
{
    return world().failing.enumeration ? nullptr : new udev_enumerate;
}

udev_enumerate *udev_enumerate_unref(udev_enumerate *list)
{
    delete list;
    return nullptr;
}

int udev_enumerate_add_match_subsystem(udev_enumerate *, const char *)
{
    return 0;
}

int udev_enumerate_scan_devices(udev_enumerate *list)
{
    if (world().failing.scan)
        return -ENOMEM;
    for (const fakeudev::Device &device : world().present) {
        list->entries.push_back({pathOf(device.name)});
        if (list->entries.size() > 1)
            list->entries[list->entries.size() - 2].next = &list->entries.back();
    }
    return 0;
}

udev_list_entry *udev_enumerate_get_list_entry(udev_enumerate *list)
{
    return list->entries.empty() ? nullptr : &list->entries.front();
}

udev_list_entry *udev_list_entry_get_next(udev_list_entry *entry)
{
    return entry->next;
}

const char *udev_list_entry_get_name(udev_list_entry *entry)
{
    return entry->name.c_str();
}

udev_device *udev_device_new_from_syspath(udev *, const char *path)
{
    for (const fakeudev::Device &device : world().present) {
        if (pathOf(device.name) == path)
            return new udev_device(describe(device, ""));
    }
    return nullptr;
}

udev_device *udev_device_unref(udev_device *device)
{
    delete device;
    return nullptr;
}

const char *udev_device_get_action(udev_device *device)
{
    return device->action.c_str();
}

const char *udev_device_get_syspath(udev_device *device)
{
    return device->path.c_str();
}

const char *udev_device_get_devnode(udev_device *device)
{
    return device->node.c_str();
}

udev_device *udev_device_get_parent_with_subsystem_devtype(udev_device *device, const char *,
                                                           const char *)
{
    return device->parentsGone ? nullptr : device;
}

const char *udev_device_get_property_value(udev_device *device, const char *)
{
    return device->identity.c_str();
}

int udev_device_get_is_initialized(udev_device *device)
{
    return device->device.isInitialized ? 1 : 0;
}

unsigned long long udev_device_get_usec_since_initialized(udev_device *)
{
    return 1'000'000'000'000;
}
}
