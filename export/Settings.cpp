// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/Settings.h"

#include "scale/Log.h"

#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

const auto lastSelectedKey = QStringLiteral("lastSelectedValue");
const auto optionGroup = QStringLiteral("defaultValue");
const auto geometryKey = QStringLiteral("windowGeometry");
const auto selectedValue = QStringLiteral("selected");

/// The number that the text starts with, 0 if none, cut to 32 bits.
int integerValue(const QString &text)
{
    const long number = std::strtol(text.toUtf8().constData(), nullptr, 10);
    return static_cast<int>(std::clamp(number, long{std::numeric_limits<int>::min()},
                                       long{std::numeric_limits<int>::max()}));
}

std::unique_ptr<QSettings> openFile()
{
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       QStringLiteral("postal-scale"),
                                       QStringLiteral("postal-scale"));
}

} // namespace

Settings::Settings()
    : file(openFile())
{
    setAsideIfDamaged();
}

Settings::~Settings() = default;

std::optional<int> Settings::lastSelectedValue() const
{
    if (!file->contains(lastSelectedKey))
        return {};
    return integerValue(file->value(lastSelectedKey).toString());
}

void Settings::setLastSelectedValue(int modelIndex)
{
    file->setValue(lastSelectedKey, modelIndex);
    write();
}

QList<int> Settings::selectedOptions() const
{
    file->beginGroup(optionGroup);
    const QStringList keys = file->childKeys();
    file->endGroup();
    QList<int> tags;
    for (const QString &key : keys)
        tags.append(integerValue(key));
    std::sort(tags.begin(), tags.end());
    return tags;
}

void Settings::setSelectedOptions(const QList<int> &tags)
{
    file->beginGroup(optionGroup);
    file->remove(QString());
    for (const int tag : tags)
        file->setValue(QString::number(tag), selectedValue);
    file->endGroup();
    write();
}

QByteArray Settings::windowGeometry() const
{
    return file->value(geometryKey).toByteArray();
}

void Settings::setWindowGeometry(const QByteArray &geometry)
{
    file->setValue(geometryKey, geometry);
    write();
}

void Settings::setAsideIfDamaged()
{
    const QString name = file->fileName();
    if (file->status() == QSettings::AccessError)
        report(QStringLiteral("The settings in %1 cannot be read. This run starts without them.")
                   .arg(name));
    if (file->status() != QSettings::FormatError)
        return;
    const QString aside =
        name + QStringLiteral(".damaged-") +
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    // The file must be let go of before it is renamed, or it would be written again.
    file.reset();
    if (QFile::rename(name, aside))
        report(QStringLiteral("The settings were damaged. They were kept as %1.").arg(aside));
    else
        report(QStringLiteral("The settings in %1 are damaged and could not be moved.").arg(name));
    file = openFile();
}

void Settings::write()
{
    file->sync();
    if (file->status() == QSettings::AccessError)
        report(QStringLiteral("Settings cannot be saved in %1. They last until the program ends.")
                   .arg(file->fileName()));
}

void Settings::report(const QString &trouble)
{
    if (trouble == currentTrouble)
        return;
    currentTrouble = trouble;
    qCWarning(systemLog).noquote() << trouble;
    emit troubleChanged(trouble);
}
