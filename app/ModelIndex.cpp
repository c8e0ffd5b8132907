// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "app/ModelIndex.h"

#include <QStringList>

std::optional<int> modelIndex(const QString &model, ModelSource source)
{
    const QLatin1String sixth(source == ModelSource::PopUp ? "KV-C100" : "KV-C400");
    // In the order of modelindex::.
    const QStringList order{
        QStringLiteral("KV-A100"), QStringLiteral("KV-A200"), QStringLiteral("KV-B100"),
        QStringLiteral("KV-B200"), QStringLiteral("KV-B300"), sixth,
        QStringLiteral("KV-C200"), QStringLiteral("KV-C300"),
    };
    const auto index = order.indexOf(model);
    if (index < 0)
        return {};
    return static_cast<int>(index);
}
