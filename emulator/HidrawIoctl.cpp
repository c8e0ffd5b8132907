// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/HidrawIoctl.h"

#include <cerrno>
#include <functional>
#include <linux/hidraw.h>
#include <stdexcept>
#include <sys/ioctl.h>

namespace {

struct HidrawHandler
{
    UMockdevIoctlBase parent;
    HidrawRequests *requests;
};

struct HidrawHandlerClass
{
    UMockdevIoctlBaseClass parent;
};

HidrawRequests &requestsOf(UMockdevIoctlBase *handler)
{
    return *reinterpret_cast<HidrawHandler *>(handler)->requests;
}

/// The library calls its handlers on a thread of its own.
void runOnMainThread(std::function<void()> action)
{
    const auto run = [](gpointer pointer) -> gboolean {
        (*static_cast<std::function<void()> *>(pointer))();
        return G_SOURCE_REMOVE;
    };
    const auto destroy = [](gpointer pointer) {
        delete static_cast<std::function<void()> *>(pointer);
    };
    g_idle_add_full(G_PRIORITY_DEFAULT, run, new std::function<void()>(std::move(action)), destroy);
}

/// @p action takes the client, which lives at least that long.
template <typename Action> void runWithClient(UMockdevIoctlClient *client, Action action)
{
    g_object_ref(client);
    runOnMainThread([client, action = std::move(action)] {
        action(client);
        g_object_unref(client);
    });
}

void clientConnected(UMockdevIoctlBase *handler, UMockdevIoctlClient *client)
{
    HidrawRequests &requests = requestsOf(handler);
    runWithClient(client, [&requests](auto *found) { requests.clientConnected(found); });
}

gboolean handleRead(UMockdevIoctlBase *handler, UMockdevIoctlClient *client)
{
    HidrawRequests &requests = requestsOf(handler);
    runWithClient(client, [&requests](auto *found) { requests.readRequested(found); });
    return TRUE;
}

// The node is a pipe underneath: an output report must not end up in it.
gboolean handleWrite(UMockdevIoctlBase *handler, UMockdevIoctlClient *client)
{
    HidrawRequests &requests = requestsOf(handler);
    const UMockdevIoctlData *data = umockdev_ioctl_client_get_arg(client);
    runWithClient(client, [&requests, report = std::vector<std::uint8_t>(
                                          data->data, data->data + data->data_len)](auto *found) {
        requests.outputReportSent(found, report);
    });
    return TRUE;
}

bool isSendFeature(unsigned long request)
{
    return _IOC_TYPE(request) == 'H' && _IOC_NR(request) == _IOC_NR(HIDIOCSFEATURE(0));
}

void passOnSize(HidrawRequests &requests, UMockdevIoctlClient *client, UMockdevIoctlData *size)
{
    runWithClient(client, [&requests, size](auto *found) {
        requests.descriptorSizeRequested(found, size);
        g_object_unref(size);
    });
}

void passOnFeatureReport(HidrawRequests &requests, UMockdevIoctlClient *client,
                         UMockdevIoctlData *data)
{
    runWithClient(client, [&requests, report = std::vector<std::uint8_t>(
                                          data->data, data->data + data->data_len)](auto *found) {
        requests.featureReportSent(found, report);
    });
    g_object_unref(data);
}

gboolean handleIoctl(UMockdevIoctlBase *handler, UMockdevIoctlClient *client)
{
    const unsigned long request = umockdev_ioctl_client_get_request(client);
    const bool sendsFeature = isSendFeature(request);
    if (!sendsFeature && request != HIDIOCGRDESCSIZE) {
        umockdev_ioctl_client_complete(client, -1, EINVAL);
        return TRUE;
    }
    UMockdevIoctlData *argument = umockdev_ioctl_client_get_arg(client);
    auto *data = umockdev_ioctl_data_resolve(argument, 0, _IOC_SIZE(request), nullptr);
    if (data == nullptr)
        umockdev_ioctl_client_complete(client, -1, EFAULT);
    else if (sendsFeature)
        passOnFeatureReport(requestsOf(handler), client, data);
    else
        passOnSize(requestsOf(handler), client, data);
    return TRUE;
}

void overrideHandlers(gpointer handlerClass, gpointer)
{
    UMockdevIoctlBaseClass &parent = static_cast<HidrawHandlerClass *>(handlerClass)->parent;
    parent.client_connected = clientConnected;
    parent.handle_ioctl = handleIoctl;
    parent.handle_read = handleRead;
    parent.handle_write = handleWrite;
}

GType handlerType()
{
    static const GType type = g_type_register_static_simple(
        UMOCKDEV_TYPE_IOCTL_BASE, "HidrawHandler", sizeof(HidrawHandlerClass), overrideHandlers,
        sizeof(HidrawHandler), nullptr, GTypeFlags{});
    return type;
}

} // namespace

HidrawIoctl::HidrawIoctl(UMockdevTestbed *testbed, std::string node, HidrawRequests &requests)
    : m_testbed(testbed)
    , m_node(std::move(node))
    , m_handler(static_cast<UMockdevIoctlBase *>(g_object_new(handlerType(), nullptr)))
{
    reinterpret_cast<HidrawHandler *>(m_handler.get())->requests = &requests;
    if (!umockdev_testbed_attach_ioctl(m_testbed, m_node.c_str(), m_handler.get(), nullptr))
        throw std::runtime_error("cannot stand behind " + m_node);
}

HidrawIoctl::~HidrawIoctl()
{
    umockdev_testbed_detach_ioctl(m_testbed, m_node.c_str(), nullptr);
}
