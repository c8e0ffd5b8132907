// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "settings/Settings.h"

#include "base/Log.h"
#include "base/RegularFile.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace {

const auto lastSelectedKey = QStringLiteral("lastSelectedValue");
const auto optionGroup = QStringLiteral("defaultValue");
const auto geometryKey = QStringLiteral("windowGeometry");
const auto compactKey = QStringLiteral("compact");
const auto compactGeometryKey = QStringLiteral("compactGeometry");
const auto settledOnlyKey = QStringLiteral("settledOnly");
const auto selectedValue = QStringLiteral("selected");

/// The number that the text starts with, 0 if none, cut to 32 bits.
int integerValue(const QString &text)
{
    const long number = std::strtol(text.toUtf8().constData(), nullptr, 10);
    return static_cast<int>(std::clamp(number, long{std::numeric_limits<int>::min()},
                                       long{std::numeric_limits<int>::max()}));
}

/// In KiB. The program itself writes hardly one.
constexpr qint64 largestFile = 64;

/// The user's file alone: an option that stood in a file of the machine could never be switched
/// off.
QString fileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/postal-scale/postal-scale.ini");
}

/// A folder in its place does no harm, and may hold whatever somebody wants to keep.
QString refusalToOpen(const QString &name)
{
    return QFileInfo(name).isDir() ? QString() : refusalOf(name, largestFile);
}

std::unique_ptr<QSettings> openFile(const QString &name)
{
    return std::make_unique<QSettings>(name, QSettings::IniFormat);
}

/// The lower ones alone: those from 0x7F on, which a file may have as escapes, are written anew as
/// they are.
bool isControl(QChar letter)
{
    return letter < QLatin1Char(' ') && !letter.isSpace();
}

/// The parser of the settings takes almost any bytes for a key.
bool holdsText(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return true;
    const QByteArray bytes = file.readAll();
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(bytes);
    return !decoder.hasError() && std::none_of(text.begin(), text.end(), isControl);
}

bool isDamaged(const QSettings &file)
{
    // Parsing waits until the keys are asked for.
    const QStringList keys = file.allKeys();
    return file.status() == QSettings::FormatError || !holdsText(file.fileName());
}

/// A program that is killed as it takes the lock leaves it empty, and an empty lock, which names
/// nobody, holds up the next write for half a minute.
void removeAbandonedLock(const QString &name)
{
    const QFileInfo lock(name + QStringLiteral(".lock"));
    if (lock.exists() && lock.size() == 0)
        QFile::remove(lock.filePath());
}

/// With the first number that no file has.
QString unusedName(const QString &start)
{
    int number = 1;
    while (QFile::exists(start + QString::number(number)))
        ++number;
    return start + QString::number(number);
}

} // namespace

Settings::Settings(Access access)
    : m_access(access)
    , m_name(fileName())
{
    if (m_access == Access::Keep)
        open();
    else
        openUntouched();
}

void Settings::open()
{
    // Before anything looks into it: there are files that cannot be read to their end.
    const QString refusal = refusalToOpen(m_name);
    if (!refusal.isEmpty())
        setAside(QStringLiteral("The settings were not usable: %1").arg(refusal.toLower()));
    m_file = openFile(m_name);
    removeAbandonedLock(m_file->fileName());
    if (refusal.isEmpty())
        setAsideIfDamaged();
}

void Settings::openUntouched()
{
    if (refusalToOpen(m_name).isEmpty())
        m_file = openFile(m_name);
    if (!m_file || isDamaged(*m_file))
        m_file = openFile(QStringLiteral("/dev/null"));
}

Settings::~Settings() = default;

std::optional<int> Settings::lastSelectedValue() const
{
    if (!m_file->contains(lastSelectedKey))
        return {};
    return integerValue(m_file->value(lastSelectedKey).toString());
}

void Settings::setLastSelectedValue(int modelIndex)
{
    if (m_access == Access::ReadOnly)
        return;
    m_file->setValue(lastSelectedKey, modelIndex);
    write();
}

QList<int> Settings::selectedOptions() const
{
    m_file->beginGroup(optionGroup);
    const QStringList keys = m_file->childKeys();
    m_file->endGroup();
    QList<int> tags;
    for (const QString &key : keys)
        tags.append(integerValue(key));
    std::sort(tags.begin(), tags.end());
    return tags;
}

void Settings::setSelectedOptions(const QList<int> &tags)
{
    if (m_access == Access::ReadOnly)
        return;
    QStringList keys;
    for (const int tag : tags)
        keys.append(QString::number(tag));
    // A restored file is written once for each of its options: with thousands of them, of which few
    // are known, the disk would be busy for half a minute with one and the same text.
    if (hasExactly(keys) && QFile::exists(m_file->fileName())) {
        write();
        return;
    }
    m_file->beginGroup(optionGroup);
    m_file->remove(QString());
    for (const QString &key : std::as_const(keys))
        m_file->setValue(key, selectedValue);
    m_file->endGroup();
    write();
}

bool Settings::hasExactly(QStringList keys) const
{
    m_file->beginGroup(optionGroup);
    QStringList stored = m_file->childKeys();
    const bool areSelected = m_file->childGroups().isEmpty() &&
                             std::all_of(stored.begin(), stored.end(), [this](const QString &key) {
                                 return m_file->value(key).toString() == selectedValue;
                             });
    m_file->endGroup();
    keys.sort();
    stored.sort();
    return areSelected && stored == keys;
}

QByteArray Settings::windowGeometry() const
{
    return m_file->value(geometryKey).toByteArray();
}

void Settings::setWindowGeometry(const QByteArray &geometry)
{
    if (m_access == Access::ReadOnly)
        return;
    m_file->setValue(geometryKey, geometry);
    write();
}

bool Settings::compact() const
{
    return m_file->value(compactKey, false).toBool();
}

void Settings::setCompact(bool compact)
{
    if (m_access == Access::ReadOnly)
        return;
    m_file->setValue(compactKey, compact);
    write();
}

QByteArray Settings::compactGeometry() const
{
    return m_file->value(compactGeometryKey).toByteArray();
}

void Settings::setCompactGeometry(const QByteArray &geometry)
{
    if (m_access == Access::ReadOnly)
        return;
    m_file->setValue(compactGeometryKey, geometry);
    write();
}

bool Settings::settledOnly() const
{
    return m_file->value(settledOnlyKey, false).toBool();
}

void Settings::setSettledOnly(bool settledOnly)
{
    if (m_access == Access::ReadOnly)
        return;
    m_file->setValue(settledOnlyKey, settledOnly);
    write();
}

void Settings::setAsideIfDamaged()
{
    if (m_file->status() == QSettings::AccessError)
        report(QStringLiteral("The settings in %1 cannot be read. This run starts without them.")
                   .arg(m_name));
    if (!isDamaged(*m_file))
        return;
    // The file must be let go of before it is renamed, or it would be written again.
    m_file.reset();
    setAside(QStringLiteral("The settings were damaged"));
    m_file = openFile(m_name);
}

void Settings::setAside(const QString &reason)
{
    const QString aside = unusedName(m_name + QStringLiteral(".damaged-"));
    if (QFile::rename(m_name, aside)) {
        report(QStringLiteral("%1. They were kept as %2.").arg(reason, aside));
        return;
    }
    report(QStringLiteral("The settings in %1 are damaged and could not be moved.").arg(m_name));
    // What cannot be read to its end is not to be opened where it stands either.
    if (!refusalToOpen(m_name).isEmpty())
        m_name += QStringLiteral(".new");
}

void Settings::holdBack()
{
    m_holdsBack = true;
    m_file->installEventFilter(this);
}

void Settings::writeHeldBack()
{
    m_holdsBack = false;
    m_file->removeEventFilter(this);
    if (std::exchange(m_isWriteOwed, false))
        write();
}

bool Settings::eventFilter(QObject *, QEvent *event)
{
    // By which the file reminds itself to write what was changed.
    return event->type() == QEvent::UpdateRequest;
}

void Settings::write()
{
    m_isWriteOwed = m_holdsBack;
    if (m_holdsBack)
        return;
    // A status stays what it once was. Another object for the same file has one of its own, and
    // shares what has not been written yet.
    if (m_file->status() != QSettings::NoError) {
        auto successor = openFile(m_name);
        m_file = std::move(successor);
    }
    m_file->sync();
    const QString unsaved =
        QStringLiteral("Settings cannot be saved in %1. They last until the program ends.")
            .arg(m_file->fileName());
    if (m_file->status() == QSettings::AccessError)
        report(unsaved);
    else if (m_currentTrouble == unsaved)
        withdrawReport();
}

void Settings::report(const QString &trouble)
{
    if (trouble == m_currentTrouble)
        return;
    m_currentTrouble = trouble;
    qCWarning(systemLog).noquote() << trouble;
    emit troubleChanged(trouble);
}

void Settings::withdrawReport()
{
    m_currentTrouble.clear();
    emit troubleChanged(m_currentTrouble);
}
