// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/Announcer.h"

#include <QAccessibleWidget>
#include <QWidget>
#include <chrono>

using namespace std::chrono_literals;

/// Hidden, and yet told of.
class AnnouncedLine : public QWidget
{
public:
    using QWidget::QWidget;

    /// Who goes through the window finds what was said last alone.
    bool isLatest() const { return m_isLatest; }
    void begin()
    {
        m_isLatest = true;
        tell(QAccessible::ObjectShow);
    }
    void end() { m_isLatest = false; }
    void tellEnd()
    {
        if (m_isTold && !m_isLatest)
            tell(QAccessible::ObjectHide);
    }

private:
    void tell(QAccessible::Event change)
    {
        m_isTold = change == QAccessible::ObjectShow;
        QAccessibleEvent event(this, change);
        QAccessible::updateAccessibility(&event);
    }

    bool m_isLatest = false;
    bool m_isTold = false;
};

namespace {

/// Longer than a screen reader is behind: what is gone again it does not read out, though it was
/// told of it before.
constexpr auto readOutWithin = 5s;

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
    m_ends.setSingleShot(true);
    m_ends.setInterval(readOutWithin);
    connect(&m_ends, &QTimer::timeout, this, [this] {
        for (AnnouncedLine *line : m_lines)
            line->tellEnd();
    });
}

void Announcer::say(const QString &words)
{
    m_words = words;
    AnnouncedLine *line = m_lines.at(m_next);
    m_next = (m_next + 1) % m_lines.size();
    line->setAccessibleName(words);
    if (m_latest)
        m_latest->end();
    m_latest = line;
    line->begin();
    m_ends.start();
}
