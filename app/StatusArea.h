// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
#include <QObject>
#include <QString>

class ElidedLabel;
class QMainWindow;
class QMargins;
class QPushButton;
class Settings;

/// What the user should know of, on one line along the window's edge.
class StatusArea : public QObject
{
    Q_OBJECT

public:
    enum class Notice {
        Connection,
        Watching,
        Silence,
        Scale,
        Settings,
        Clipboard,
        OnTop,
        Information,
        Session
    };

    /// @param above margins of what stands above, to be in line with it
    /// @param settings tell of their own trouble, and must outlive the area
    StatusArea(QMainWindow &window, const QMargins &above, const Settings &settings);

    /// The first sentence is shown, of the scale all of them; the whole text on hover. Empty takes
    /// the notice away.
    void setNotice(Notice topic, const QString &text) { setNotice(topic, text, text); }
    /// @param trouble what the notice is about, where its text has more in it that changes: only
    /// another trouble is told
    void setNotice(Notice topic, const QString &text, const QString &trouble);
    bool hasNotice(Notice topic) const { return !m_notices.value(topic).isEmpty(); }
    /// For who listens: what is shown, and how to come to the rest. Not of a silent scale: as a
    /// reading that has its words, with the cure. Empty without notices.
    QString spokenNotices() const;
    void showBrowserStatus(const QString &text);
    /// The browsers matter while weights go into their pages.
    void setBrowserShown(bool shown);
    /// Where there is no room to spare, the line is there for notices only.
    void setSparing(bool sparing);

signals:
    /// @param words as spokenNotices() has them, of this one
    void noticeAppeared(const QString &words);

private:
    QString spokenNotice(Notice topic) const;
    void showNotices();
    void showParts();
    /// The whole texts, in a window of their own.
    void explain();

    QMainWindow &m_window;
    ElidedLabel *m_notice;
    QPushButton *m_details;
    ElidedLabel *m_browser;
    bool m_isBrowserShown = false;
    bool m_isSparing = false;
    QMap<Notice, QString> m_notices;
    QMap<Notice, QString> m_troubles;
    QString m_shown;
    QString m_explained;
};
