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
    : client(socketPath)
{
    setWindowTitle(tr("Emulated Scale"));
    buildForm();
    connect(&refreshTimer, &QTimer::timeout, this, &ControlWindow::refresh);
    refreshTimer.start(refreshInterval);
    refresh();
}

void ControlWindow::buildForm()
{
    loadSlider = new QSlider(Qt::Horizontal);
    loadSpinBox = new QSpinBox;
    plugButton = new QPushButton;
    typeBox = new QComboBox;
    capacityBox = new QComboBox;
    loadSlider->setMinimum(lightestLoad);
    loadSlider->setPageStep(100);
    loadSlider->setMinimumWidth(300);
    loadSpinBox->setRange(lightestLoad, heaviestLoad);
    loadSpinBox->setSuffix(tr(" g"));
    typeBox->addItem(tr("0: packed decimal grams"), "0");
    typeBox->addItem(tr("1: binary tenths of an ounce"), "1");
    capacityBox->addItem(tr("ordinary"), "ordinary");
    capacityBox->addItem(tr("high, steps of 10 g"), "high");

    auto *form = new QFormLayout(this);
    form->addRow(tr("Pan load"), loadSlider);
    form->addRow(QString(), loadSpinBox);
    form->addRow(tr("USB cable"), plugButton);
    form->addRow(tr("Type"), typeBox);
    form->addRow(tr("Capacity"), capacityBox);
    addStateRow(form, tr("Node"), "node");
    addStateRow(form, tr("Power"), "power");
    addStateRow(form, tr("Tare button"), "tare");
    addStateRow(form, tr("Hold button"), "hold");
    addStateRow(form, tr("Unit"), "unit");
    addStateRow(form, tr("Tare weight, g"), "tare-weight");
    addStateRow(form, tr("Net weight, g"), "net");

    connect(loadSlider, &QSlider::valueChanged, this, &ControlWindow::setLoad);
    connect(loadSpinBox, &QSpinBox::valueChanged, this, &ControlWindow::setLoad);
    connect(plugButton, &QPushButton::clicked, this,
            [this] { send(plugButton->property("command").toString()); });
    connect(typeBox, &QComboBox::activated, this,
            [this] { send("type " + typeBox->currentData().toString()); });
    connect(capacityBox, &QComboBox::activated, this,
            [this] { send("capacity " + capacityBox->currentData().toString()); });
}

void ControlWindow::addStateRow(QFormLayout *form, const QString &title, const QString &key)
{
    auto *label = new QLabel;
    form->addRow(title, label);
    stateLabels.insert(key, label);
}

void ControlWindow::setLoad(int grams)
{
    send("weight " + QString::number(grams));
}

void ControlWindow::send(const QString &command)
{
    try {
        client.request(command.toStdString());
    } catch (const std::runtime_error &) {
        // Somebody else was quicker with the cable, or the emulator has ended: refresh() tells.
    }
    refresh();
}

void ControlWindow::refresh()
{
    std::string line;
    try {
        line = client.request("state");
    } catch (const std::runtime_error &) {
        refreshTimer.stop();
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
    const QSignalBlocker sliderBlocker(loadSlider);
    const QSignalBlocker spinBoxBlocker(loadSpinBox);
    const int load = state["load"].toInt();
    loadSlider->setMaximum(sliderEnd(state["type"], state["capacity"]));
    loadSlider->setValue(load);
    loadSpinBox->setValue(load);
    typeBox->setCurrentIndex(typeBox->findData(state["type"]));
    capacityBox->setCurrentIndex(capacityBox->findData(state["capacity"]));
    const bool plugged = state["plugged"] == "yes";
    plugButton->setText(plugged ? tr("Unplug") : tr("Plug in"));
    plugButton->setProperty("command", plugged ? "unplug" : "plug");
    for (auto label = stateLabels.cbegin(); label != stateLabels.cend(); ++label)
        label.value()->setText(state[label.key()]);
}
