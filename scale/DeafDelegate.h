// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/ScaleDelegate.h"

/// The interface for a link that is not in use.
class DeafDelegate : public ScaleDelegate
{
public:
    void setStatusString(bool) override {}
    void setIsDeviceAlive(bool) override {}
    void setConnectionTrouble(const QString &) override {}
    void showWatchTrouble(const QString &) override {}
    void clearAll() override {}
    void Draw5Digit(qint64) override {}
    void Draw5DigitOverload() override {}
    void DisplayUnit(int) override {}
    void shownegativeSign(bool) override {}
    void setUnitCaptionHidden(bool) override {}
    QString exportLabelText() const override { return {}; }
    void setExportLabelText(const QString &) override {}
    void copyToClipboard(const QString &) override {}
    QString selectedModelName() const override { return {}; }
    int selectedRadioButtonIndex() const override { return 0; }
    bool SetClip() const override { return false; }
};
