// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// The path of a file that is built or installed together with this program.
std::string besideThisProgram(const std::string &fileName);
