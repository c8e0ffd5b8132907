// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/HidrawNode.h"

#include <map>

/// The /dev/hidrawN of the testbed, by N. As in the kernel, a number is taken until its device is
/// unplugged and the last program has closed it, and there are 64 of them.
class HidrawMinors
{
public:
    explicit HidrawMinors(UMockdevTestbed *testbed);
    ~HidrawMinors();

    /// The lowest free one. Throws std::runtime_error when none is free.
    int lowestFree();
    /// From here on the node can be opened.
    HidrawNode &plug(int minor, Permission permission, HidrawDevice &device);
    /// The node's path has to be gone by now.
    void unplug(int minor);

    /// Those of earlier plug-ins included.
    int openHandles(const HidrawDevice &device) const;
    void interruptReads();

private:
    class Slot;

    Slot &slot(int minor);

    UMockdevTestbed *m_testbed;
    std::string m_devDirectory;
    std::map<int, std::unique_ptr<Slot>> m_slots;
};
