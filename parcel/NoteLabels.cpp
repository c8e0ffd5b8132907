// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "parcel/NoteLabels.h"

#include "parcel/ReadingNotes.h"
#include "widgets/ElidedLabel.h"

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

void NoteLabels::show(const ReadingNotes &notes)
{
    m_caption.setText(notes.exportCaption());
    showWhole(m_standing, notes.standing());
    showWhole(m_leaves, notes.leaves());
}
