// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class ScaleLink;

/// What the program knows of the scale in use beside what the link knows: how it stands, and what
/// the user has chosen for it.
class ScaleSession
{
public:
    bool isDeviceAlive() const { return m_isDeviceAlive; }
    void setIsDeviceAlive(bool alive) { m_isDeviceAlive = alive; }
    /// Empty until the user chooses a model.
    const QString &selectedModelName() const { return m_selectedModelName; }
    void setSelectedModelName(const QString &name) { m_selectedModelName = name; }
    /// Tag of the unit that the user chose last, one of unittag::.
    int selectedRadioButtonIndex() const { return m_selectedRadioButtonIndex; }
    void setSelectedRadioButtonIndex(int tag) { m_selectedRadioButtonIndex = tag; }

    /// To the scale in use.
    ScaleLink &link() const { return *m_link; }
    void setLink(ScaleLink &link) { m_link = &link; }

    bool isDeviceConnected = false;
    bool onhold = false;
    bool pausereadtimer = false; ///< while a unit is being sent, so that no poll falls between
    int tareflashtime = 0;       ///< ticks since the latest tare; shared by all blink timers

private:
    ScaleLink *m_link = nullptr; ///< set before anything asks
    bool m_isDeviceAlive = false;
    int m_selectedRadioButtonIndex = 0;
    QString m_selectedModelName;
};
