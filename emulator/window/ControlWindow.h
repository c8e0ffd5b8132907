// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/EmulatorClient.h"

#include <QHash>
#include <QTimer>
#include <QWidget>

class QComboBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

/// The emulated scale's pan and cable for a person. Others may drive the same scale meanwhile, so
/// what is shown is always what the scale says. Closes when the emulator ends.
class ControlWindow : public QWidget
{
    Q_OBJECT

public:
    /// Throws std::runtime_error when there is no emulator.
    explicit ControlWindow(const std::string &socketPath);

private:
    using State = QHash<QString, QString>;

    void buildForm();
    void addStateRow(QFormLayout *form, const QString &title, const QString &key);
    void send(const QString &command);
    void refresh();
    void display(const State &state);
    void setLoad(int grams);

    EmulatorClient client;
    QTimer refreshTimer;
    QSlider *loadSlider = nullptr;
    QSpinBox *loadSpinBox = nullptr;
    QPushButton *plugButton = nullptr;
    QComboBox *typeBox = nullptr;
    QComboBox *capacityBox = nullptr;
    QHash<QString, QLabel *> stateLabels; ///< by key of the state line
};
