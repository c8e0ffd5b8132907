// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "browser/link/Browser.h"

QList<std::optional<QString>> BrowserApplication::ask(const QStringList &questions,
                                                      const std::shared_ptr<const BrowserTab> &tab)
{
    QList<std::optional<QString>> values;
    for (const QString &question : questions)
        values.append(doJavaScript(question, tab));
    return values;
}
