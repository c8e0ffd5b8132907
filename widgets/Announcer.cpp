// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/Announcer.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace {

/// Hidden, and yet told of.
class AnnouncedLine : public QWidget
{
public:
    using QWidget::QWidget;
};

class AnnouncedLineAccessible : public QAccessibleWidget
{
public:
    explicit AnnouncedLineAccessible(AnnouncedLine *line)
        : QAccessibleWidget(line, QAccessible::Notification)
    {
    }

    // What does not show is not read out.
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = false;
        state.offscreen = false;
        return state;
    }
};

QAccessibleInterface *makeAnnouncedLineAccessible(const QString &, QObject *object)
{
    auto *line = dynamic_cast<AnnouncedLine *>(object);
    return line ? new AnnouncedLineAccessible(line) : nullptr;
}

} // namespace

Announcer::Announcer(QWidget *window)
    : QObject(window)
{
    // Known already unless this is the application's first; each application forgets its own.
    QAccessible::installFactory(makeAnnouncedLineAccessible);
    for (QWidget *&line : m_lines) {
        line = new AnnouncedLine(window);
        line->hide();
    }
}

void Announcer::say(const QString &words)
{
    m_words = words;
    QWidget *line = m_lines.at(m_next);
    m_next = (m_next + 1) % m_lines.size();
    line->setAccessibleName(words);
    QAccessibleEvent shown(line, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}
