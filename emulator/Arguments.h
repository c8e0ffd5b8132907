// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/ScaleModel.h"

#include <span>
#include <string>
#include <vector>

/// The command line.
struct Arguments
{
    enum class AtStart { Plugged, Unplugged };
    enum class Window { None, Control };

    std::string socketPath; ///< empty: not given
    ScaleModel::Type type = ScaleModel::Type::PackedDecimal;
    ScaleModel::Capacity capacity = ScaleModel::Capacity::Ordinary;
    int weight = 0; ///< grams
    AtStart atStart = AtStart::Plugged;
    Window window = Window::None;
    std::vector<std::string> command;
};

inline constexpr const char *usage =
    "Usage: postal-scale-emulator [--socket PATH] [--type 0|1] [--capacity ordinary|high]\n"
    "           [--weight GRAMS] [--unplugged] [--control-window] -- COMMAND [ARGS...]\n";

/// Throws std::invalid_argument with what is wrong.
Arguments parseArguments(std::span<char *const> words);

/// These throw std::invalid_argument too.
ScaleModel::Type typeFromText(const std::string &text);
ScaleModel::Capacity capacityFromText(const std::string &text);
int numberFromText(const std::string &text);
