// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class HIDManager;
class PointOfSaleLink;
struct HidDeviceInfo;

/// Which of the links has the scale in use. The described scale comes first: one of the class is
/// taken only while none of those is there, and given up when one comes.
class ScaleChoice : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the choice, which is to be made before the devices are watched.
    ScaleChoice(HIDManager &described, PointOfSaleLink &other, QObject *parent);

private:
    void look();
    void noticeChange(const HidDeviceInfo &device);
    void noticeRemoval(const HidDeviceInfo &device);
    void giveUp();

    HIDManager &m_described;
    PointOfSaleLink &m_other;
};
