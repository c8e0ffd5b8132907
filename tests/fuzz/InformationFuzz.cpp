// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Any bytes as the file with branding and model lists.

#include "app/BundleInformation.h"
#include "tests/fuzz/Fuzz.h"

#include <QCoreApplication>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

namespace {

struct Place
{
    Place() { QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false")); }

    QTemporaryDir folder{QStringLiteral("/dev/shm/postal-scale-fuzz-XXXXXX")};
    QString name = folder.filePath(QStringLiteral("Info.json"));
};

bool agree(const BundleInformation &one, const BundleInformation &other)
{
    return one.appNameDisplay() == other.appNameDisplay() && one.isUSPS() == other.isUSPS() &&
           one.modelNames() == other.modelNames();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const Place place;
    static const BundleInformation builtIn = BundleInformation::load(QStringLiteral(":/Info.json"));
    const QByteArray text(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    QFile file(place.name);
    require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size(), "a place to write");
    file.close();

    QString error;
    const auto parsed = BundleInformation::parse(text, &error);
    require(parsed.has_value() == error.isEmpty(), "what is refused has a reason");
    const BundleInformation loaded = BundleInformation::load(place.name);
    require(agree(loaded, parsed.value_or(builtIn)), "a damaged file gives the built-in lists");
    for (const QString &model : loaded.modelNames())
        require(loaded.windowTitle(model).endsWith(model), "a title names its model");
    return 0;
}
