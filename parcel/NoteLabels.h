// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "parcel/ReadingNotes.h"

class ElidedLabel;
class QLabel;

/// The notes of the reading, beside the panel.
class NoteLabels
{
public:
    NoteLabels(QLabel &caption, ElidedLabel &standing, ElidedLabel &leaves);

    /// Costs next to nothing while there is nothing new to be said.
    void show(ReadingNotes notes);

private:
    QLabel &m_caption;
    ElidedLabel &m_standing;
    ElidedLabel &m_leaves;
    ReadingNotes m_shown;
};
