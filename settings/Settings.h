// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

class QSettings;

/// What is kept between runs, in an INI file under the user's configuration folder. Every change
/// is written at once, unless it is held back, as a whole file that takes the old one's place: a
/// crash leaves the old or the new one.
///
/// | key               | type              | default |
/// |-------------------|-------------------|---------|
/// | lastSelectedValue | whole number      | none    |
/// | defaultValue/TAG  | text "selected"   | none    |
/// | windowGeometry    | Qt's own bytes    | none    |
/// | settledOnly       | true or false     | false   |
/// | compact           | true or false     | false   |
/// | compactGeometry   | Qt's own bytes    | none    |
class Settings : public QObject
{
    Q_OBJECT

public:
    enum class Access {
        Keep,     ///< a change is written
        ReadOnly, ///< what is stored stays as it is, whatever is set here
    };

    /// A file that cannot be parsed, is no regular one or is far too large is set aside under
    /// another name first; where nothing may be changed, it counts as empty.
    explicit Settings(Access access = Access::Keep);
    ~Settings() override;

    /// Index of the unit set that was applied last. A text that starts with no number counts as 0,
    /// one beyond 32 bits as the nearest that fits.
    std::optional<int> lastSelectedValue() const;
    void setLastSelectedValue(int modelIndex);

    /// Tags of the options that were on, ascending; what is stored under them does not matter.
    QList<int> selectedOptions() const;
    void setSelectedOptions(const QList<int> &tags);

    /// Size and place of the window; empty before the first change, unusable bytes do no harm.
    QByteArray windowGeometry() const;
    void setWindowGeometry(const QByteArray &geometry);

    /// Whether the window was in its compact form, and where that was.
    bool compact() const;
    void setCompact(bool compact);
    QByteArray compactGeometry() const;
    void setCompactGeometry(const QByteArray &geometry);

    /// Whether only settled weights leave the program; not one of the options above.
    bool settledOnly() const;
    void setSettledOnly(bool settledOnly);

    /// A write waits for the disk, often for longer than a window needs to be drawn. From here on a
    /// change is kept in the memory.
    void holdBack();
    /// Writes what was held back, all in one, and each change at once from here on. Otherwise it is
    /// written when the object goes.
    void writeHeldBack();

    bool eventFilter(QObject *watched, QEvent *event) override;

    /// What is wrong with the file or its folder, in words for the user; empty if nothing.
    const QString &trouble() const { return m_currentTrouble; }

signals:
    void troubleChanged(const QString &trouble);

private:
    void open();
    void openUntouched();
    /// Whether these options are stored, and no others.
    bool hasExactly(QStringList keys) const;
    void setAsideIfDamaged();
    /// @param reason one clause without a full stop
    void setAside(const QString &reason);
    void write();
    void report(const QString &trouble);
    void withdrawReport();

    Access m_access;
    QString m_name;
    std::unique_ptr<QSettings> m_file;
    QString m_currentTrouble;
    bool m_holdsBack = false;
    bool m_isWriteOwed = false;
};
