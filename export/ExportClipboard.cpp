// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/ExportClipboard.h"

#include "desktop/ClipboardControl.h"
#include "desktop/WindowDesktop.h"
#include "export/ExportState.h"

#include <QClipboard>
#include <QGuiApplication>
#include <utility>

ExportClipboard::ExportClipboard(ExportState &state, ShowNotice showNotice)
    : m_state(state)
    , m_showNotice(std::move(showNotice))
{
}

ExportClipboard::~ExportClipboard() = default;

void ExportClipboard::switchTo(bool on)
{
    m_state.setSetClip(on);
    if (on)
        lookAtDesktop();
    if (!on || !m_refusal.isEmpty())
        m_showNotice(on ? m_refusal : QString());
}

void ExportClipboard::lookAtDesktop()
{
    DesktopSituation situation = situationOfWindows();
    if (situation.desktop == Desktop::None)
        return;
    if (!m_control || !m_control->isOffered())
        m_control = std::make_unique<ClipboardControl>();
    m_wasControlled = m_control->isOffered();
    situation.controlsClipboard = m_wasControlled;
    m_refusal = clipboardTrouble(situation).text();
}

bool ExportClipboard::copy(const QString &text)
{
    // The compositor may have taken the control away: another one, or its refusal, stands then.
    const bool isLost = m_wasControlled && !m_control->isOffered();
    if (!m_control || isLost)
        lookAtDesktop();
    const bool isWritten = isHeld(text) || write(text);
    if (m_state.SetClip() && !m_refusal.isEmpty())
        m_showNotice(m_refusal);
    else
        m_showNotice(isWritten ? QString()
                               : QStringLiteral("The desktop does not let this window write the "
                                                "clipboard while it is not in front."));
    return isWritten;
}

// On Wayland the toolkit takes the clipboard for its own when the desktop has refused it.
bool ExportClipboard::isHeld(const QString &text) const
{
    if (m_control && m_control->isOffered())
        return m_control->holds(text);
    const QClipboard *clipboard = QGuiApplication::clipboard();
    return m_refusal.isEmpty() && clipboard->ownsClipboard() && m_written &&
           clipboard->mimeData() == m_written && m_written->text() == text;
}

bool ExportClipboard::write(const QString &text)
{
    if (m_control && m_control->isOffered())
        return m_control->write(text);
    m_written = new QMimeData;
    m_written->setText(text);
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(m_written);
    return m_refusal.isEmpty() ? clipboard->ownsClipboard()
                               : QGuiApplication::focusWindow() != nullptr;
}
