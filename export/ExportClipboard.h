// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <functional>

class ExportState;

/// The weight on the clipboard.
class ExportClipboard
{
public:
    using ShowNotice = std::function<void(const QString &text)>;

    /// @param showNotice gets an empty text when there is nothing to be said any more
    ExportClipboard(ExportState &state, ShowNotice showNotice);

    void switchTo(bool on);
    /// False where the desktop refuses it.
    bool copy(const QString &text);

private:
    ExportState &m_state;
    ShowNotice m_showNotice;
};
