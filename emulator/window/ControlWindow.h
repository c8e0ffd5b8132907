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

    EmulatorClient m_client;
    QTimer m_refreshTimer;
    QSlider *m_loadSlider = nullptr;
    QSpinBox *m_loadSpinBox = nullptr;
    QPushButton *m_plugButton = nullptr;
    QComboBox *m_typeBox = nullptr;
    QComboBox *m_capacityBox = nullptr;
    QHash<QString, QLabel *> m_stateLabels; ///< by key of the state line
};
