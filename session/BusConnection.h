// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <memory>

class QSocketNotifier;
struct sd_bus;

/// A connection to a message bus that the event loop drives. It never waits for anything.
class BusConnection : public QObject
{
    Q_OBJECT

public:
    enum class Bus { System, Session };

    explicit BusConnection(Bus bus, QObject *parent = nullptr);
    ~BusConnection() override;

    /// Null where there is no such bus.
    sd_bus *bus() const { return m_bus.get(); }
    /// To be called once the first calls and matches have been made.
    void drive();

signals:
    /// Nothing comes any more.
    void hungUp();

private:
    struct Closer
    {
        void operator()(sd_bus *bus) const;
    };

    void process();

    std::unique_ptr<sd_bus, Closer> m_bus;
    std::unique_ptr<QSocketNotifier> m_incoming;
    std::unique_ptr<QSocketNotifier> m_outgoing; ///< on while something waits to be sent
};
