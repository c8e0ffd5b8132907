// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

class ElidedLabel;
class QLabel;
struct ReadingNotes;

/// The notes of the reading, beside the panel.
class NoteLabels
{
public:
    NoteLabels(QLabel &caption, ElidedLabel &standing, ElidedLabel &leaves);

    void show(const ReadingNotes &notes);

private:
    QLabel &m_caption;
    ElidedLabel &m_standing;
    ElidedLabel &m_leaves;
};
