// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/BundleInformation.h"

#include "base/InstalledFolders.h"
#include "base/InstalledPath.h"
#include "base/Log.h"
#include "base/RegularFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <algorithm>

namespace {

/// In KiB. The built-in one has less than one.
constexpr qint64 largestFile = 256;
/// More than anybody could choose from.
constexpr qsizetype mostModels = 1000;

/// Nothing, and the reason in @p trouble, where it is not usable.
std::optional<BundleInformation> read(const QString &path, QString *trouble)
{
    const std::optional<QByteArray> text = readRegularFile(path, largestFile, trouble);
    if (!text) {
        *trouble = QStringLiteral("Cannot read %1: %2").arg(path, *trouble);
        return {};
    }
    const auto information = BundleInformation::parse(*text, trouble);
    if (!information)
        *trouble = QStringLiteral("%1 is damaged: %2").arg(path, *trouble);
    return information;
}

BundleInformation builtIn()
{
    QFile file(QStringLiteral(":/Info.json"));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("{}");
    QString none;
    return *BundleInformation::parse(text, &none);
}

/// The user's, or the system's, or that of an installation of its own; empty if there is none.
QString chosenFile()
{
    const QString found = QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                 QStringLiteral("postal-scale/Info.json"));
    if (!found.isEmpty())
        return found;
    const QString own = installedPath(systemInformationFolder) + QStringLiteral("/Info.json");
    return QFile::exists(own) ? own : QString();
}

bool hasTooManyModels(const QJsonObject &object)
{
    return std::any_of(object.begin(), object.end(),
                       [](const QJsonValue &value) { return value.toArray().size() > mostModels; });
}

} // namespace

BundleInformation BundleInformation::load(const QString &file)
{
    const QString path = file.isEmpty() ? chosenFile() : file;
    if (path.isEmpty())
        return builtIn();
    QString trouble;
    if (const auto information = read(path, &trouble))
        return *information;
    qCWarning(systemLog).noquote() << trouble;
    qCWarning(systemLog) << "The built-in branding and model lists are used instead";
    BundleInformation instead = builtIn();
    instead.m_trouble = trouble + QStringLiteral(". The built-in model lists are used instead.");
    return instead;
}

std::optional<BundleInformation> BundleInformation::parse(const QByteArray &json, QString *error)
{
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(json, &problem);
    if (document.isObject() && !hasTooManyModels(document.object()))
        return BundleInformation(document.object());
    if (document.isObject())
        *error = QStringLiteral("more than %1 models").arg(mostModels);
    else
        *error =
            problem.error == QJsonParseError::NoError
                ? QStringLiteral("no object")
                : QStringLiteral("%1 at byte %2").arg(problem.errorString()).arg(problem.offset);
    return {};
}

BundleInformation::BundleInformation(const QJsonObject &object)
    : m_values(object)
{
}

QString BundleInformation::appNameDisplay() const
{
    return m_values.value(QLatin1String("appNameDisplay")).toString();
}

bool BundleInformation::isUSPS() const
{
    return m_values.value(QLatin1String("isUSPS")).toString() == QLatin1String("YES");
}

QStringList BundleInformation::modelNames() const
{
    const QLatin1String key(isUSPS() ? "KayForUSPS" : "KeyForNonUSPS");
    QStringList names;
    for (const auto &name : m_values.value(key).toArray()) {
        if (name.isString())
            names.append(name.toString());
    }
    return names;
}

QString BundleInformation::windowTitle(const QString &model) const
{
    const QString format =
        isUSPS() ? QStringLiteral("Postal Scale-%1") : QStringLiteral("Kelvane-%1");
    return format.arg(model);
}
