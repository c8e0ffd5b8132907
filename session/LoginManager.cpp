// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "session/LoginManager.h"

#include "session/BusConnection.h"

#include <fcntl.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto path = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";

/// False where the announcement carries something else.
bool readBegins(sd_bus_message *message, bool &begins)
{
    int value = 0;
    if (sd_bus_message_read(message, "b", &value) < 0)
        return false;
    begins = value != 0;
    return true;
}

void listenFor(sd_bus *bus, const char *announcement, sd_bus_message_handler_t handler,
               void *object)
{
    sd_bus_match_signal_async(bus, nullptr, service, path, managerInterface, announcement, handler,
                              nullptr, object);
}

struct MessageDeleter
{
    void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
};

} // namespace

LoginManager::LoginManager(QObject *parent)
    : QObject(parent)
{
}

LoginManager::~LoginManager()
{
    letGo();
}

void LoginManager::start()
{
    m_connection = std::make_unique<BusConnection>(BusConnection::Bus::System);
    sd_bus *bus = m_connection->bus();
    if (!bus)
        return;
    connect(m_connection.get(), &BusConnection::hungUp, this, &LoginManager::hangUp);
    listenFor(
        bus, "PrepareForSleep",
        [](sd_bus_message *message, void *object, sd_bus_error *) {
            if (bool begins = false; readBegins(message, begins))
                static_cast<LoginManager *>(object)->takeSleep(begins);
            return 0;
        },
        this);
    listenFor(
        bus, "PrepareForShutdown",
        [](sd_bus_message *message, void *object, sd_bus_error *) {
            if (bool begins = false; readBegins(message, begins) && begins)
                emit static_cast<LoginManager *>(object)->shuttingDown();
            return 0;
        },
        this);
    holdUp();
    m_connection->drive();
}

void LoginManager::holdUp()
{
    sd_bus_message *message = nullptr;
    if (sd_bus_message_new_method_call(m_connection->bus(), &message, service, path,
                                       managerInterface, "Inhibit") < 0)
        return;
    const std::unique_ptr<sd_bus_message, MessageDeleter> call(message);
    // A machine without logind is not to be given one.
    sd_bus_message_set_auto_start(message, 0);
    sd_bus_message_append(message, "ssss", "sleep:shutdown", "Postal Scale",
                          "The scale is being switched off", "delay");
    sd_bus_call_async(
        m_connection->bus(), nullptr, message,
        [](sd_bus_message *answer, void *object, sd_bus_error *) {
            int inhibitor = -1;
            if (sd_bus_message_is_method_error(answer, nullptr) == 0 &&
                sd_bus_message_read(answer, "h", &inhibitor) >= 0)
                // The answer closes its own.
                static_cast<LoginManager *>(object)->hold(fcntl(inhibitor, F_DUPFD_CLOEXEC, 0));
            return 0;
        },
        this, 0);
}

void LoginManager::hold(int inhibitor)
{
    letGo();
    m_inhibitor = inhibitor;
}

void LoginManager::letGo()
{
    if (m_inhibitor >= 0)
        close(m_inhibitor);
    m_inhibitor = -1;
}

/// The bus is gone, and with it whoever waited, or would have said that the machine is awake.
void LoginManager::hangUp()
{
    letGo();
    emit wokeUp();
}

void LoginManager::takeSleep(bool begins)
{
    if (begins) {
        emit goingToSleep();
        letGo();
    } else {
        emit wokeUp();
        holdUp();
    }
}
