// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

class HIDManager;
class PointOfSaleLink;
struct FoundScale;
struct HidDeviceInfo;
struct OpenedScale;

/// Which of the links has the scale in use. The described scale comes first: one of the class is
/// taken only while none of those is there, and given up when one comes. Of the class, the first
/// one that can be opened is taken, and which one could not is told.
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
    void take(const FoundScale &scale, OpenedScale opened);
    /// Nothing where the path is empty.
    void passOver(const QString &systemPath, const QString &trouble);
    void forgetPassedOver(const QString &systemPath);

    HIDManager &m_described;
    PointOfSaleLink &m_other;
    QString m_passedOver; ///< the path of the first one that did not work; empty: none
};
