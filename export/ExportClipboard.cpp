// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/ExportClipboard.h"

#include "export/ExportState.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

ExportClipboard::ExportClipboard(ExportState &state, ShowNotice showNotice)
    : m_state(state)
    , m_showNotice(std::move(showNotice))
{
}

void ExportClipboard::switchTo(bool on)
{
    m_state.setSetClip(on);
    if (!on)
        m_showNotice({});
}

bool ExportClipboard::copy(const QString &text)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(text);
    const bool isWritten = clipboard->ownsClipboard();
    m_showNotice(isWritten ? QString()
                           : QStringLiteral("The desktop does not let this window write the "
                                            "clipboard while it is not in front."));
    return isWritten;
}
