// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/Announcer.h"

#include <QAccessibleWidget>
#include <QWidget>

/// Hidden, and yet told of.
class AnnouncedLine : public QWidget
{
public:
    using QWidget::QWidget;

    /// Who goes through the window finds what was said last alone.
    void setLatest(bool latest)
    {
        m_isLatest = latest;
        QAccessibleEvent change(this, latest ? QAccessible::ObjectShow : QAccessible::ObjectHide);
        QAccessible::updateAccessibility(&change);
    }
    bool isLatest() const { return m_isLatest; }

private:
    bool m_isLatest = false;
};

namespace {

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
        const bool isLatest = static_cast<const AnnouncedLine *>(widget())->isLatest();
        state.invisible = !isLatest;
        state.offscreen = !isLatest;
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
    for (AnnouncedLine *&line : m_lines) {
        line = new AnnouncedLine(window);
        // By itself a child has a place and a size, in the corner.
        line->setGeometry(0, 0, 0, 0);
        line->hide();
    }
}

void Announcer::say(const QString &words)
{
    m_words = words;
    AnnouncedLine *line = m_lines.at(m_next);
    m_next = (m_next + 1) % m_lines.size();
    line->setAccessibleName(words);
    if (m_latest)
        m_latest->setLatest(false);
    m_latest = line;
    line->setLatest(true);
}
