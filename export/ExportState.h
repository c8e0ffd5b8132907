// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "browser/link/Browser.h"

#include <cstdint>
#include <memory>
#include <vector>

/// Where weights go, as the user has it.
class ExportState
{
public:
    /// Every reading is copied to the clipboard.
    bool SetClip() const { return m_SetClip; }
    void setSetClip(bool copyReadings) { m_SetClip = copyReadings; }

    bool showOption = false; ///< the box of options is open
    // A carrier is served while its flag is exactly 1.
    std::uint8_t SendtoUSPS = 0;
    std::uint8_t SendtoUPS = 0;
    std::uint8_t SendtoFedex = 0;
    // What the latest fill went to.
    std::unique_ptr<BrowserApplication> safari;
    std::vector<std::shared_ptr<const BrowserWindow>> windows;
    std::shared_ptr<const BrowserTab> currentTab; ///< null where there was none

private:
    bool m_SetClip = false;
};
