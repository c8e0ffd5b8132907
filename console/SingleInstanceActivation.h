// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>

class QWidget;

/// What the desktop hands to a program that a person starts, so that its window may come to the
/// front. A later start passes it on to the first one.
struct ActivationRight
{
    QString startupId;       ///< X11
    QString activationToken; ///< Wayland

    /// To be called before there is an application object: the toolkit takes both away.
    static ActivationRight fromEnvironment();
    static ActivationRight fromJson(const QJsonObject &object);
    QJsonObject toJson() const;

    bool operator==(const ActivationRight &) const = default;
};

/// When the person acted, in the X server's milliseconds; 0 if @p startupId does not tell.
quint32 startTime(const QString &startupId);

/// Puts @p window in front of the others, wherever it was, and tells the desktop that the later
/// start is over.
void bringToFront(QWidget *window, const ActivationRight &right);

/// Whether a person sees that by now: @p window or a box of it is active, or, on X11, marked by the
/// desktop as one that wants to be looked at. A mark on Wayland is nothing that a program is told
/// of.
bool isBroughtToFront(const QWidget &window);
