// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "scale/SystemHidDevices.h"

#include <deque>
#include <functional>
#include <map>
#include <utility>
#include <vector>

/// The machine's devices as the fake libraries have them, with scales of the class among them: what
/// these say of themselves, and what they send.
class ClassScaleDevices : public SystemHidDevices
{
public:
    using Report = std::vector<std::uint8_t>;

    struct Scale
    {
        QByteArray descriptor;
        QString name;
        std::deque<Report> reports; ///< to be read, oldest first
        int readingError = 0;
        int accessError = 0;              ///< of writing too
        bool openFails = false;           ///< though it is permitted
        int readFailure = 0;              ///< -1: reading fails
        int plugs = 0;                    ///< what is opened works until the next one
        std::function<void()> duringRead; ///< once; may be empty
        bool isDeaf = false;              ///< nothing can be written
        int opens = 0;                    ///< that worked
        int tries = 0;                    ///< of opening it
        int reads = 0;
        int openConnections = 0;
        std::vector<Report> written;
    };
    /// By node, "/dev/hidraw5". Entries stay where they are.
    std::map<QString, Scale> scales;

    std::unique_ptr<HidConnection> openToRead(const QString &node) override
    {
        Scale &scale = scales[node];
        ++scale.tries;
        if (scale.readingError != 0 || scale.openFails)
            return nullptr;
        ++scale.opens;
        return std::make_unique<Connection>(scale);
    }

    int sendOutputReport(const QString &node, std::span<const std::uint8_t> report) override
    {
        if (scales[node].isDeaf)
            return -1;
        scales[node].written.emplace_back(report.begin(), report.end());
        return static_cast<int>(report.size());
    }

    int readingError(const QString &node) const override
    {
        const auto found = scales.find(node);
        return found == scales.end() ? ENOENT : found->second.readingError;
    }

    int accessError(const QString &node) const override
    {
        const auto found = scales.find(node);
        return found == scales.end() ? ENOENT : found->second.accessError;
    }

    QByteArray reportDescriptor(const HidDeviceInfo &device) override
    {
        return scales[device.node].descriptor;
    }

    QString nameOf(const HidDeviceInfo &device) const override
    {
        const auto found = scales.find(device.node);
        return found == scales.end() ? QString() : found->second.name;
    }

private:
    class Connection : public HidConnection
    {
    public:
        explicit Connection(Scale &scale)
            : m_scale(scale)
            , m_plug(scale.plugs)
        {
            ++m_scale.openConnections;
        }
        ~Connection() override { --m_scale.openConnections; }

        int sendFeatureReport(std::span<const std::uint8_t>) override { return -1; }

        std::optional<int> read(std::span<std::uint8_t> buffer, std::chrono::milliseconds) override
        {
            ++m_scale.reads;
            if (m_scale.duringRead)
                std::exchange(m_scale.duringRead, {})();
            if (m_scale.plugs != m_plug)
                return -1;
            if (m_scale.readFailure != 0)
                return m_scale.readFailure;
            if (m_scale.reports.empty())
                return std::nullopt;
            const Report report = m_scale.reports.front();
            m_scale.reports.pop_front();
            const std::size_t count = std::min(buffer.size(), report.size());
            std::copy_n(report.begin(), count, buffer.begin());
            return static_cast<int>(count);
        }

    private:
        Scale &m_scale;
        int m_plug;
    };
};
