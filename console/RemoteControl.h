// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class ReadingReportDelegate;

/// What a start with a verb has the running window do, and what has become of it.
struct RemoteAnswer
{
    int exitStatus = 0; ///< as that of --print
    QString words;      ///< one line

    QJsonObject toJson() const;
    static RemoteAnswer fromJson(const QJsonObject &object);
    /// There is no window.
    static RemoteAnswer nobody();
    /// There is one, but it does not answer.
    static RemoteAnswer hanging();
};

/// Operates the running window as its user does, with its buttons and unit rows.
class RemoteControl
{
public:
    /// @param window must outlive the object
    explicit RemoteControl(ReadingReportDelegate &window);

    /// @param verb one of verbs()
    /// @param value for "hold" and "compact": on, off or toggle; for "unit": one of units()
    RemoteAnswer perform(const QString &verb, const QString &value);

    /// Whether a value, with a verb that takes one, is known.
    static bool isKnown(const QString &verb, const QString &value);
    /// In the order of the rows.
    static QStringList units();

private:
    RemoteAnswer tare();
    RemoteAnswer hold(const QString &value);
    RemoteAnswer compact(const QString &value);
    RemoteAnswer power();
    RemoteAnswer chooseUnit(const QString &unit);
    RemoteAnswer capture();

    ReadingReportDelegate &m_window;
};
