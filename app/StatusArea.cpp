// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/StatusArea.h"

#include "settings/Settings.h"
#include "widgets/ElidedLabel.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

namespace {

/// The cure of a trouble with the scale is one key, and it is short.
QString shownPart(StatusArea::Notice topic, const QString &notice)
{
    return topic == StatusArea::Notice::Scale ? notice : notice.section(QStringLiteral(". "), 0, 0);
}

} // namespace

StatusArea::StatusArea(QMainWindow &window, const QMargins &above, const Settings &settings)
    : m_window(window)
    , m_notice(new ElidedLabel(&window))
    , m_details(new QPushButton(QStringLiteral("D&etails"), &window))
    , m_browser(new ElidedLabel(&window))
{
    QStatusBar &area = *window.statusBar();
    area.setContentsMargins(above.left(), 0, above.right(), 0);
    area.setSizeGripEnabled(false);
    area.addWidget(m_notice);
    area.addWidget(m_details);
    connect(m_details, &QPushButton::clicked, this, &StatusArea::explain);
    m_browser->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    area.addPermanentWidget(m_browser, 1);
    showNotices();
    setNotice(Notice::Settings, settings.trouble());
    connect(&settings, &Settings::troubleChanged, this,
            [this](const QString &trouble) { setNotice(Notice::Settings, trouble); });
}

void StatusArea::setNotice(Notice topic, const QString &text, const QString &trouble)
{
    if (m_notices.value(topic) == text)
        return;
    const bool isOtherTrouble = m_troubles.value(topic) != trouble;
    m_notices.insert(topic, text);
    m_troubles.insert(topic, trouble);
    showNotices();
    if (isOtherTrouble && !text.isEmpty() && topic != Notice::Silence)
        emit noticeAppeared(spokenNotice(topic));
}

QString StatusArea::spokenNotice(Notice topic) const
{
    const QString notice = m_notices.value(topic);
    const QString shown = shownPart(topic, notice);
    return shown == notice ? shown : QStringLiteral("%1. Press Alt+E for details").arg(shown);
}

QString StatusArea::spokenNotices() const
{
    QStringList spoken;
    for (auto entry = m_notices.cbegin(); entry != m_notices.cend(); ++entry) {
        if (!entry.value().isEmpty() && entry.key() != Notice::Silence)
            spoken.append(spokenNotice(entry.key()));
    }
    return spoken.join(QStringLiteral(". "));
}

void StatusArea::showNotices()
{
    QStringList shown;
    QStringList explained;
    for (auto entry = m_notices.cbegin(); entry != m_notices.cend(); ++entry) {
        const QString &notice = entry.value();
        if (notice.isEmpty())
            continue;
        shown.append(shownPart(entry.key(), notice));
        explained.append(notice);
    }
    m_shown = shown.join(QStringLiteral(" \u00b7 "));
    m_explained = explained.join(QStringLiteral("\n\n"));
    m_notice->setText(m_shown);
    m_notice->setToolTip(m_explained);
    m_details->setHidden(explained.isEmpty());
    showParts();
}

void StatusArea::showParts()
{
    m_browser->setHidden(m_isSparing || !m_isBrowserShown);
    m_window.statusBar()->setHidden(m_isSparing && m_shown.isEmpty());
}

void StatusArea::setBrowserShown(bool shown)
{
    m_isBrowserShown = shown;
    showParts();
}

void StatusArea::setSparing(bool sparing)
{
    m_isSparing = sparing;
    showParts();
}

void StatusArea::explain()
{
    auto *box = new QMessageBox(QMessageBox::Information, m_shown, m_explained, QMessageBox::Close,
                                &m_window);
    box->setTextFormat(Qt::PlainText);
    // To be copied into a terminal.
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void StatusArea::showBrowserStatus(const QString &text)
{
    m_browser->setText(text);
    m_browser->setToolTip(text);
}
