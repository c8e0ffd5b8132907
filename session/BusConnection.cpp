// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "session/BusConnection.h"

#include <QSocketNotifier>
#include <poll.h>
#include <systemd/sd-bus.h>

void BusConnection::Closer::operator()(sd_bus *bus) const
{
    // Not flushed: that could wait.
    sd_bus_close(bus);
    sd_bus_unref(bus);
}

BusConnection::BusConnection(Bus bus, QObject *parent)
    : QObject(parent)
{
    sd_bus *opened = nullptr;
    const int result = bus == Bus::System ? sd_bus_open_system(&opened) : sd_bus_open_user(&opened);
    if (result >= 0)
        m_bus.reset(opened);
}

BusConnection::~BusConnection() = default;

void BusConnection::drive()
{
    const int descriptor = sd_bus_get_fd(m_bus.get());
    m_incoming = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    m_outgoing = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
    connect(m_incoming.get(), &QSocketNotifier::activated, this, &BusConnection::process);
    connect(m_outgoing.get(), &QSocketNotifier::activated, this, &BusConnection::process);
}

void BusConnection::process()
{
    int state = 1;
    while (state > 0)
        state = sd_bus_process(m_bus.get(), nullptr);
    const int events = state < 0 ? state : sd_bus_get_events(m_bus.get());
    if (events >= 0) {
        m_outgoing->setEnabled((events & POLLOUT) != 0);
        return;
    }
    m_incoming->setEnabled(false);
    m_outgoing->setEnabled(false);
    emit hungUp();
}
