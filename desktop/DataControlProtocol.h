// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <wayland-client-core.h>

/// The interfaces through which a Wayland client handles the clipboard of its session whatever
/// window is in front. There are two protocols for it, with the same requests and events in the
/// same order; only the names differ.
class DataControlProtocol
{
public:
    /// Places in the lists of requests.
    struct ManagerRequest
    {
        static constexpr uint32_t createSource = 0;
        static constexpr uint32_t getDevice = 1;
        static constexpr uint32_t destroy = 2;
    };
    struct DeviceRequest
    {
        static constexpr uint32_t setSelection = 0;
        static constexpr uint32_t destroy = 1;
    };
    struct SourceRequest
    {
        static constexpr uint32_t offer = 0;
        static constexpr uint32_t destroy = 1;
    };
    struct OfferRequest
    {
        static constexpr uint32_t destroy = 1;
    };

    /// In the order of their events. The library takes them as lists of functions.
    struct DeviceEvents
    {
        void (*dataOffer)(void *context, wl_proxy *device, wl_proxy *offer);
        void (*selection)(void *context, wl_proxy *device, wl_proxy *offer);
        void (*finished)(void *context, wl_proxy *device);
        void (*primarySelection)(void *context, wl_proxy *device, wl_proxy *offer);
    };
    struct SourceEvents
    {
        void (*send)(void *context, wl_proxy *source, const char *type, int descriptor);
        void (*cancelled)(void *context, wl_proxy *source);
    };

    /// Of that manager, by its name; null for any other interface.
    static const DataControlProtocol *ofManager(const char *interface);

    const wl_interface &manager() const { return m_manager; }
    const wl_interface &device() const { return m_device; }
    const wl_interface &source() const { return m_source; }

private:
    struct Names
    {
        const char *manager;
        const char *device;
        const char *source;
        const char *offer;
    };
    explicit DataControlProtocol(const Names &names);
    DataControlProtocol(const DataControlProtocol &) = delete;

    // They point at each other.
    std::array<const wl_interface *, 1> m_ofSource{&m_source};
    std::array<const wl_interface *, 2> m_ofDevice;
    std::array<const wl_interface *, 1> m_ofOffer{&m_offer};
    std::array<wl_message, 3> m_managerRequests;
    std::array<wl_message, 2> m_deviceRequests;
    std::array<wl_message, 4> m_deviceEvents;
    std::array<wl_message, 2> m_sourceRequests;
    std::array<wl_message, 2> m_sourceEvents;
    std::array<wl_message, 2> m_offerRequests;
    std::array<wl_message, 1> m_offerEvents;
    wl_interface m_manager;
    wl_interface m_device;
    wl_interface m_source;
    wl_interface m_offer;
};
