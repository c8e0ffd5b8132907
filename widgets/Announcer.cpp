// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "widgets/Announcer.h"

#include <QAccessibleWidget>

namespace {

class AnnouncerAccessible : public QAccessibleWidget
{
public:
    explicit AnnouncerAccessible(Announcer *announcer)
        : QAccessibleWidget(announcer, QAccessible::Notification)
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

QAccessibleInterface *makeAnnouncerAccessible(const QString &, QObject *object)
{
    auto *announcer = qobject_cast<Announcer *>(object);
    return announcer ? new AnnouncerAccessible(announcer) : nullptr;
}

} // namespace

Announcer::Announcer(QWidget *window)
    : QWidget(window)
{
    static const bool registered = [] {
        QAccessible::installFactory(makeAnnouncerAccessible);
        return true;
    }();
    Q_UNUSED(registered)
    hide();
}

void Announcer::say(const QString &words)
{
    setAccessibleName(words);
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}
