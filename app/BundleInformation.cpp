// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/BundleInformation.h"

#include "base/Log.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

namespace {

std::optional<BundleInformation> read(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(systemLog).noquote()
            << QStringLiteral("Cannot read %1: %2").arg(path, file.errorString());
        return {};
    }
    QString error;
    const auto information = BundleInformation::parse(file.readAll(), &error);
    if (!information)
        qCWarning(systemLog).noquote() << QStringLiteral("%1 is damaged: %2").arg(path, error);
    return information;
}

} // namespace

BundleInformation BundleInformation::load(const QString &file)
{
    const QString path = file.isEmpty()
                             ? QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                      QStringLiteral("postal-scale/Info.json"))
                             : file;
    if (!path.isEmpty()) {
        if (const auto information = read(path))
            return *information;
        qCWarning(systemLog) << "The built-in branding and model lists are used instead";
    }
    return read(QStringLiteral(":/Info.json")).value_or(BundleInformation({}));
}

std::optional<BundleInformation> BundleInformation::parse(const QByteArray &json, QString *error)
{
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(json, &problem);
    if (document.isObject())
        return BundleInformation(document.object());
    *error = problem.error == QJsonParseError::NoError
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
