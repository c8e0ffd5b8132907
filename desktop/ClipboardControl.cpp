// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/ClipboardControl.h"

#include "desktop/DataControlProtocol.h"

#include <QSocketNotifier>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <wayland-client-protocol.h>

namespace {

constexpr uint32_t protocolVersion = 1;

/// What programs on Wayland ask for, and what those behind Xwayland do.
constexpr const char *textTypes[] = {"text/plain;charset=utf-8", "UTF8_STRING", "text/plain",
                                     "STRING", "TEXT"};

void destroy(wl_proxy *proxy, uint32_t request)
{
    if (proxy != nullptr)
        wl_proxy_marshal_flags(proxy, request, nullptr, 1, WL_MARSHAL_FLAG_DESTROY);
}

} // namespace

/// A text on its way to those that paste it. The compositor may ask for an earlier one too, until
/// it calls that off.
struct ClipboardControl::Source
{
    explicit Source(wl_proxy *object, QByteArray contents)
        : proxy(object)
        , text(std::move(contents))
    {
    }
    ~Source() { destroy(proxy, DataControlProtocol::SourceRequest::destroy); }
    Source(const Source &) = delete;

    wl_proxy *proxy;
    QByteArray text;
};

/// What the compositor says. The context is the object.
struct ClipboardControl::Events
{
    static ClipboardControl &of(void *context) { return *static_cast<ClipboardControl *>(context); }

    static void global(void *context, wl_registry *registry, uint32_t name, const char *interface,
                       uint32_t)
    {
        ClipboardControl &control = of(context);
        const auto bind = [&](const wl_interface &wanted) {
            return static_cast<wl_proxy *>(
                wl_registry_bind(registry, name, &wanted, protocolVersion));
        };
        if (control.m_seat == nullptr && std::strcmp(interface, wl_seat_interface.name) == 0)
            control.m_seat = bind(wl_seat_interface);
        const DataControlProtocol *protocol = DataControlProtocol::ofManager(interface);
        if (control.m_manager != nullptr || protocol == nullptr)
            return;
        control.m_protocol = protocol;
        control.m_manager = bind(protocol->manager());
    }

    static void globalRemove(void *, wl_registry *, uint32_t) {}

    static void send(void *context, wl_proxy *proxy, const char *, int descriptor)
    {
        const auto &sources = of(context).m_sources;
        const auto found = std::find_if(sources.begin(), sources.end(),
                                        [&](const auto &each) { return each->proxy == proxy; });
        // Who pastes may have filled the pipe, or be gone. A weight fits into any that is empty.
        fcntl(descriptor, F_SETFL, O_NONBLOCK);
        if (found != sources.end()) {
            const QByteArray &text = (*found)->text;
            [[maybe_unused]] const auto written =
                ::write(descriptor, text.constData(), static_cast<size_t>(text.size()));
        }
        ::close(descriptor);
    }

    static void cancelled(void *context, wl_proxy *proxy) { of(context).forget(proxy); }

    static void dataOffer(void *, wl_proxy *, wl_proxy *) {}

    /// Nothing is pasted here.
    static void selection(void *, wl_proxy *, wl_proxy *offer)
    {
        destroy(offer, DataControlProtocol::OfferRequest::destroy);
    }

    static void finished(void *context, wl_proxy *) { of(context).lose(); }
};

void ClipboardControl::Disconnect::operator()(wl_display *display) const
{
    wl_display_disconnect(display);
}

ClipboardControl::ClipboardControl(QObject *parent)
    : QObject(parent)
{
    if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return;
    m_display.reset(wl_display_connect(nullptr));
    if (!m_display || !findDevice()) {
        lose();
        return;
    }
    // Who pastes may go before having read.
    std::signal(SIGPIPE, SIG_IGN);
    m_readable =
        new QSocketNotifier(wl_display_get_fd(m_display.get()), QSocketNotifier::Read, this);
    connect(m_readable, &QSocketNotifier::activated, this, &ClipboardControl::readEvents);
}

ClipboardControl::~ClipboardControl()
{
    lose();
}

bool ClipboardControl::findDevice()
{
    static constexpr wl_registry_listener registryEvents{.global = &Events::global,
                                                         .global_remove = &Events::globalRemove};
    static DataControlProtocol::DeviceEvents deviceEvents{.dataOffer = &Events::dataOffer,
                                                          .selection = &Events::selection,
                                                          .finished = &Events::finished,
                                                          .primarySelection = &Events::selection};
    wl_registry *registry = wl_display_get_registry(m_display.get());
    wl_registry_add_listener(registry, &registryEvents, this);
    const bool isAnswered = wl_display_roundtrip(m_display.get()) >= 0;
    wl_registry_destroy(registry);
    if (!isAnswered || m_manager == nullptr || m_seat == nullptr)
        return false;
    m_device = wl_proxy_marshal_flags(m_manager, DataControlProtocol::ManagerRequest::getDevice,
                                      &m_protocol->device(), protocolVersion, 0, nullptr, m_seat);
    wl_proxy_add_listener(m_device, reinterpret_cast<void (**)()>(&deviceEvents), this);
    return wl_display_roundtrip(m_display.get()) >= 0;
}

bool ClipboardControl::holds(const QString &text) const
{
    return m_current != nullptr && m_current->text == text.toUtf8();
}

bool ClipboardControl::write(const QString &text)
{
    static DataControlProtocol::SourceEvents sourceEvents{.send = &Events::send,
                                                          .cancelled = &Events::cancelled};
    if (!isOffered())
        return false;
    wl_proxy *source =
        wl_proxy_marshal_flags(m_manager, DataControlProtocol::ManagerRequest::createSource,
                               &m_protocol->source(), protocolVersion, 0, nullptr);
    wl_proxy_add_listener(source, reinterpret_cast<void (**)()>(&sourceEvents), this);
    for (const char *type : textTypes)
        wl_proxy_marshal_flags(source, DataControlProtocol::SourceRequest::offer, nullptr,
                               protocolVersion, 0, type);
    wl_proxy_marshal_flags(m_device, DataControlProtocol::DeviceRequest::setSelection, nullptr,
                           protocolVersion, 0, source);
    m_sources.push_back(std::make_unique<Source>(source, text.toUtf8()));
    m_current = m_sources.back().get();
    wl_display_flush(m_display.get());
    return true;
}

void ClipboardControl::readEvents()
{
    wl_display *display = m_display.get();
    while (wl_display_prepare_read(display) != 0)
        wl_display_dispatch_pending(display);
    wl_display_flush(display);
    if (wl_display_read_events(display) < 0 || wl_display_dispatch_pending(display) < 0)
        lose();
}

void ClipboardControl::forget(wl_proxy *source)
{
    if (m_current != nullptr && m_current->proxy == source)
        m_current = nullptr;
    std::erase_if(m_sources, [source](const auto &each) { return each->proxy == source; });
}

void ClipboardControl::lose()
{
    if (m_readable != nullptr)
        m_readable->setEnabled(false);
    m_current = nullptr;
    m_sources.clear();
    destroy(std::exchange(m_device, nullptr), DataControlProtocol::DeviceRequest::destroy);
    destroy(std::exchange(m_manager, nullptr), DataControlProtocol::ManagerRequest::destroy);
    if (m_seat != nullptr)
        wl_seat_destroy(reinterpret_cast<wl_seat *>(std::exchange(m_seat, nullptr)));
}
