// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

class BrowserBridge;
class ExportState;
class QLabel;
class ScaleSession;

/// The numbers by which carriers are named.
namespace carrier {
inline constexpr int usps = 0;
inline constexpr int ups = 1;
inline constexpr int fedex = 2;
} // namespace carrier

/// The latest weight on the carriers' pages.
class CarrierPages
{
public:
    /// All must outlive the object.
    CarrierPages(BrowserBridge &browsers, const ScaleSession &session, const QLabel &exportLabel,
                 ExportState &state);

    /// Into the current tab of the browser's first window. Without its flag, USPS still gets its
    /// plain fields, UPS and FedEx get nothing.
    /// @param number one of carrier::; for any other, the tab is only looked up
    void Autofill(int number);

    /// A page that is busy gets nothing later of what was meant for it until now.
    void forgetWaiting();
    /// The same for that carrier alone, once it is not served any more.
    /// @param number one of carrier::
    void stopFilling(int number);

private:
    BrowserBridge &m_browsers;
    const ScaleSession &m_session;
    const QLabel &m_exportLabel;
    ExportState &m_state;
};
