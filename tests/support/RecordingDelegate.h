// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/ScaleDelegate.h"
#include "scale/SystemHidDevices.h"

#include <QStringList>

/// An interface without a window: it writes down what the link asks of it, in order.
class RecordingDelegate : public ScaleDelegate, public ScaleApplication
{
public:
    ScaleDelegate *delegate() const override { return const_cast<RecordingDelegate *>(this); }

    HidDevices &devices() override { return m_machine; }

    void setStatusString(bool connected) override { call("setStatusString", connected); }
    void setIsDeviceAlive(bool alive) override { call("setIsDeviceAlive", alive); }
    void setConnectionTrouble(const QString &trouble) override { connectionTrouble = trouble; }
    void showWatchTrouble(const QString &trouble) override { watchTrouble = trouble; }
    void clearAll() override
    {
        calls.append(QStringLiteral("clearAll"));
        label.clear();
    }
    void Draw5Digit(qint64 nValue) override { call("Draw5Digit", nValue); }
    void Draw5DigitOverload() override { calls.append(QStringLiteral("Draw5DigitOverload")); }
    void DisplayUnit(int unit) override { call("DisplayUnit", unit); }
    void shownegativeSign(bool negative) override { call("shownegativeSign", negative); }
    void setUnitCaptionHidden(bool hidden) override { call("unitLBl setHidden", hidden); }
    QString exportLabelText() const override { return label; }
    void setExportLabelText(const QString &text) override { label = text; }
    void copyToClipboard(const QString &text) override { clipboard.append(text); }
    QString selectedModelName() const override { return model; }
    int selectedRadioButtonIndex() const override { return radioButtonIndex; }
    bool SetClip() const override { return clip; }

    QStringList calls;
    QStringList clipboard;
    QString connectionTrouble;
    QString watchTrouble;
    QString label;
    QString model;
    int radioButtonIndex = 3;
    bool clip = false;

private:
    SystemHidDevices m_machine;

    void call(const char *name, qint64 argument)
    {
        calls.append(QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(argument));
    }
};
