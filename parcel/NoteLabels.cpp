// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/NoteLabels.h"

#include "widgets/ElidedLabel.h"

using namespace std::chrono_literals;

namespace {

/// Where there is no room for all of it, the rest is shown on hover.
void showWhole(ElidedLabel &label, const QString &text)
{
    label.setText(text);
    label.setToolTip(text);
}

} // namespace

NoteLabels::NoteLabels(QLabel &caption, ElidedLabel &standing, ElidedLabel &leaves)
    : m_caption(caption)
    , m_standing(standing)
    , m_leaves(leaves)
{
}

void NoteLabels::show(ReadingNotes notes)
{
    // In the steps in which it is told.
    notes.age = notes.isOld() ? std::chrono::floor<std::chrono::seconds>(notes.age) + 1ms : 0ms;
    if (notes == m_shown)
        return;
    m_shown = notes;
    m_caption.setText(notes.exportCaption());
    showWhole(m_standing, notes.standing());
    showWhole(m_leaves, notes.leaves());
}
