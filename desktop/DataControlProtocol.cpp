// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "desktop/DataControlProtocol.h"

#include <string_view>
#include <wayland-client-protocol.h>

namespace {

/// For values that are no objects: one for each of them.
std::array<const wl_interface *, 2> plainValues{nullptr, nullptr};

template <size_t Requests>
wl_interface interfaceOf(const char *name, const std::array<wl_message, Requests> &requests)
{
    return {.name = name,
            .version = 1,
            .method_count = int(Requests),
            .methods = requests.data(),
            .event_count = 0,
            .events = nullptr};
}

template <size_t Requests, size_t Events>
wl_interface interfaceOf(const char *name, const std::array<wl_message, Requests> &requests,
                         const std::array<wl_message, Events> &events)
{
    wl_interface interface = interfaceOf(name, requests);
    interface.event_count = int(Events);
    interface.events = events.data();
    return interface;
}

} // namespace

DataControlProtocol::DataControlProtocol(const Names &names)
    : m_ofDevice{&m_device, &wl_seat_interface}
    , m_managerRequests{{{"create_data_source", "n", m_ofSource.data()},
                         {"get_data_device", "no", m_ofDevice.data()},
                         {"destroy", "", plainValues.data()}}}
    , m_deviceRequests{{{"set_selection", "?o", m_ofSource.data()},
                        {"destroy", "", plainValues.data()}}}
    , m_deviceEvents{{{"data_offer", "n", m_ofOffer.data()},
                      {"selection", "?o", m_ofOffer.data()},
                      {"finished", "", plainValues.data()},
                      {"primary_selection", "?o", m_ofOffer.data()}}}
    , m_sourceRequests{{{"offer", "s", plainValues.data()}, {"destroy", "", plainValues.data()}}}
    , m_sourceEvents{{{"send", "sh", plainValues.data()}, {"cancelled", "", plainValues.data()}}}
    , m_offerRequests{{{"receive", "sh", plainValues.data()}, {"destroy", "", plainValues.data()}}}
    , m_offerEvents{{{"offer", "s", plainValues.data()}}}
    , m_manager(interfaceOf(names.manager, m_managerRequests))
    , m_device(interfaceOf(names.device, m_deviceRequests, m_deviceEvents))
    , m_source(interfaceOf(names.source, m_sourceRequests, m_sourceEvents))
    , m_offer(interfaceOf(names.offer, m_offerRequests, m_offerEvents))
{
}

const DataControlProtocol *DataControlProtocol::ofManager(const char *interface)
{
    static const DataControlProtocol ext({.manager = "ext_data_control_manager_v1",
                                          .device = "ext_data_control_device_v1",
                                          .source = "ext_data_control_source_v1",
                                          .offer = "ext_data_control_offer_v1"});
    static const DataControlProtocol wlr({.manager = "zwlr_data_control_manager_v1",
                                          .device = "zwlr_data_control_device_v1",
                                          .source = "zwlr_data_control_source_v1",
                                          .offer = "zwlr_data_control_offer_v1"});
    for (const DataControlProtocol *protocol : {&ext, &wlr}) {
        if (std::string_view(protocol->m_manager.name) == interface)
            return protocol;
    }
    return nullptr;
}
