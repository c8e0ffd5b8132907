// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMimeData>
#include <QPointer>
#include <QString>
#include <functional>
#include <memory>

class ClipboardControl;
class ExportState;

/// The weight on the clipboard.
class ExportClipboard
{
public:
    using ShowNotice = std::function<void(const QString &text)>;

    /// @param showNotice gets an empty text when there is nothing to be said any more
    ExportClipboard(ExportState &state, ShowNotice showNotice);
    ~ExportClipboard();

    /// Where the desktop will not have it, the notice comes at once, and stays while it is on.
    void switchTo(bool on);
    /// Leaves a clipboard alone that holds this text, from here: whoever pastes just then gets it
    /// without a gap. False where the desktop refuses it.
    bool copy(const QString &text);

private:
    void lookAtDesktop();
    bool isHeld(const QString &text) const;
    bool write(const QString &text);

    ExportState &m_state;
    ShowNotice m_showNotice;
    std::unique_ptr<ClipboardControl> m_control; ///< null before it is needed, and without desktop
    bool m_wasControlled = false;                ///< when the desktop was looked at
    QString m_refusal;                           ///< of the desktop; empty if there is none
    QPointer<QMimeData> m_written;               ///< the toolkit's; null once it is not there
};
