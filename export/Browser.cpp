// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "export/Browser.h"

namespace {

BrowserBridge *shared = nullptr;

class AbsentBrowser : public BrowserApplication
{
public:
    std::vector<std::shared_ptr<const BrowserWindow>> windows() const override { return {}; }

    std::optional<QString> doJavaScript(const QString &,
                                        const std::shared_ptr<const BrowserTab> &) override
    {
        return std::nullopt;
    }
};

} // namespace

BrowserBridge::BrowserBridge()
{
    shared = this;
}

BrowserBridge::~BrowserBridge()
{
    if (shared == this)
        shared = nullptr;
}

std::unique_ptr<BrowserApplication> BrowserBridge::application()
{
    if (shared == nullptr)
        return std::make_unique<AbsentBrowser>();
    return shared->makeApplication();
}
