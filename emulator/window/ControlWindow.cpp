// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/window/ControlWindow.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <chrono>
#include <stdexcept>

namespace {

using namespace std::chrono_literals;

constexpr int lightestLoad = -500; ///< the pan taken off
constexpr int heaviestLoad = 105000;

/// Somewhat more than the scale can weigh.
int sliderEnd(const QString &type, const QString &capacity)
{
    if (type == "1")
        return 40000;
    return capacity == "high" ? heaviestLoad : 11000;
}

constexpr auto refreshInterval = 200ms;

} // namespace

ControlWindow::ControlWindow(const std::string &socketPath)
    : m_client(socketPath)
{
    setWindowTitle(QStringLiteral("Emulated Scale"));
    buildForm();
    connect(&m_refreshTimer, &QTimer::timeout, this, &ControlWindow::refresh);
    m_refreshTimer.start(refreshInterval);
    refresh();
}

void ControlWindow::buildForm()
{
    m_loadSlider = new QSlider(Qt::Horizontal);
    m_loadSpinBox = new QSpinBox;
    m_plugButton = new QPushButton;
    m_typeBox = new QComboBox;
    m_capacityBox = new QComboBox;
    m_loadSlider->setMinimum(lightestLoad);
    m_loadSlider->setPageStep(100);
    m_loadSlider->setMinimumWidth(300);
    m_loadSpinBox->setRange(lightestLoad, heaviestLoad);
    m_loadSpinBox->setSuffix(QStringLiteral(" g"));
    m_typeBox->addItem(QStringLiteral("0: packed decimal grams"), "0");
    m_typeBox->addItem(QStringLiteral("1: binary tenths of an ounce"), "1");
    m_capacityBox->addItem(QStringLiteral("ordinary"), "ordinary");
    m_capacityBox->addItem(QStringLiteral("high, steps of 10 g"), "high");

    auto *form = new QFormLayout(this);
    form->addRow(QStringLiteral("Pan load"), m_loadSlider);
    form->addRow(QString(), m_loadSpinBox);
    form->addRow(QStringLiteral("USB cable"), m_plugButton);
    form->addRow(QStringLiteral("Type"), m_typeBox);
    form->addRow(QStringLiteral("Capacity"), m_capacityBox);
    addStateRow(form, QStringLiteral("Node"), "node");
    addStateRow(form, QStringLiteral("Power"), "power");
    addStateRow(form, QStringLiteral("Tare button"), "tare");
    addStateRow(form, QStringLiteral("Hold button"), "hold");
    addStateRow(form, QStringLiteral("Unit"), "unit");
    addStateRow(form, QStringLiteral("Tare weight, g"), "tare-weight");
    addStateRow(form, QStringLiteral("Net weight, g"), "net");

    connect(m_loadSlider, &QSlider::valueChanged, this, &ControlWindow::setLoad);
    connect(m_loadSpinBox, &QSpinBox::valueChanged, this, &ControlWindow::setLoad);
    connect(m_plugButton, &QPushButton::clicked, this,
            [this] { send(m_plugButton->property("command").toString()); });
    connect(m_typeBox, &QComboBox::activated, this,
            [this] { send("type " + m_typeBox->currentData().toString()); });
    connect(m_capacityBox, &QComboBox::activated, this,
            [this] { send("capacity " + m_capacityBox->currentData().toString()); });
}

void ControlWindow::addStateRow(QFormLayout *form, const QString &title, const QString &key)
{
    auto *label = new QLabel;
    form->addRow(title, label);
    m_stateLabels.insert(key, label);
}

void ControlWindow::setLoad(int grams)
{
    send("weight " + QString::number(grams));
}

void ControlWindow::send(const QString &command)
{
    try {
        m_client.request(command.toStdString());
    } catch (const std::runtime_error &) {
        // Somebody else was quicker with the cable, or the emulator has ended: refresh() tells.
    }
    refresh();
}

void ControlWindow::refresh()
{
    std::string line;
    try {
        line = m_client.request("state");
    } catch (const std::runtime_error &) {
        m_refreshTimer.stop();
        close();
        return;
    }
    State state;
    for (const QString &pair : QString::fromStdString(line).split(' '))
        state.insert(pair.section('=', 0, 0), pair.section('=', 1));
    display(state);
}

void ControlWindow::display(const State &state)
{
    const QSignalBlocker sliderBlocker(m_loadSlider);
    const QSignalBlocker spinBoxBlocker(m_loadSpinBox);
    const int load = state["load"].toInt();
    m_loadSlider->setMaximum(sliderEnd(state["type"], state["capacity"]));
    m_loadSlider->setValue(load);
    m_loadSpinBox->setValue(load);
    m_typeBox->setCurrentIndex(m_typeBox->findData(state["type"]));
    m_capacityBox->setCurrentIndex(m_capacityBox->findData(state["capacity"]));
    const bool plugged = state["plugged"] == "yes";
    m_plugButton->setText(plugged ? QStringLiteral("Unplug") : QStringLiteral("Plug in"));
    m_plugButton->setProperty("command", plugged ? "unplug" : "plug");
    for (auto label = m_stateLabels.cbegin(); label != m_stateLabels.cend(); ++label)
        label.value()->setText(state[label.key()]);
}
