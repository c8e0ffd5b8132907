// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <optional>

/// The program's Info.json: branding and model lists. A value of the wrong type counts as absent.
class BundleInformation
{
public:
    /// The one given by @p file, else an installed postal-scale/Info.json of the configuration
    /// folders, else the built-in one. A file that cannot be read or parsed is reported and the
    /// built-in one is taken.
    static BundleInformation load(const QString &file);

    /// Nothing, with the reason in @p error, where @p json is no JSON object, or lists
    /// more models than anybody could choose from.
    static std::optional<BundleInformation> parse(const QByteArray &json, QString *error);

    /// Why the built-in one was taken in place of a file; empty if there was no need.
    const QString &trouble() const { return m_trouble; }

    QString appNameDisplay() const;
    bool isUSPS() const;
    /// The models of the branding.
    QStringList modelNames() const;
    /// The window's title for a model.
    QString windowTitle(const QString &model) const;

private:
    explicit BundleInformation(const QJsonObject &object);

    QJsonObject m_values;
    QString m_trouble;
};
