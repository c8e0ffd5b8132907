// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <optional>

enum class ModelSource { PopUp, Menu };

/// The unit set (0 to 7) of a model. KV-C100 has one only when it is chosen from the pop-up,
/// KV-C400 only from the menu.
std::optional<int> modelIndex(const QString &model, ModelSource source);
