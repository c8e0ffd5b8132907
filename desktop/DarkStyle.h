// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <memory>

class BusConnection;
struct sd_bus_message;

/// Makes the windows dark while the desktop's settings say so, where the toolkit does not: under
/// GNOME its own palette stays light. They are asked for over the desktop portal, and followed.
class DarkStyle : public QObject
{
    Q_OBJECT

public:
    DarkStyle();
    ~DarkStyle() override;

    /// Whether the toolkit leaves it to the program on this desktop, and the person has not given
    /// the toolkit a style or theme of their own choice.
    static bool isNeeded();

private:
    void ask();
    void takeAnswer(sd_bus_message *answer);
    void takeChange(sd_bus_message *change);
    void takeScheme(sd_bus_message *value);

    std::unique_ptr<BusConnection> m_connection;
};
