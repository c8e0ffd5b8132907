// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ProgramDirectory.h"

#include <filesystem>

std::string besideThisProgram(const std::string &fileName)
{
    return std::filesystem::read_symlink("/proc/self/exe").replace_filename(fileName);
}
