// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>
#include <QTimer>
#include <array>

class AnnouncedLine;
class QWidget;

/// Has screen readers say a line of words, wherever the focus is: a notification is what all of
/// them read out unasked. Nothing of it is to be seen.
class Announcer : public QObject
{
    Q_OBJECT

public:
    /// The object becomes a child of @p window.
    explicit Announcer(QWidget *window);

    /// Also the same words again.
    void say(const QString &words);
    /// That were said last.
    const QString &words() const { return m_words; }

private:
    /// A screen reader that is behind asks for the words when it gets to them.
    std::array<AnnouncedLine *, 4> m_lines{};
    std::size_t m_next = 0;
    AnnouncedLine *m_latest = nullptr;
    QString m_words;
    QTimer m_ends;
};
