// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

// Any bytes as the settings file: the real start-up over it, and a second one over what the first
// has left.

#include "app/PostalScaleAppDelegate.h"
#include "browser/link/BrowserLink.h"
#include "scale/SystemHidDevices.h"
#include "settings/Settings.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/LaunchedApplication.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

namespace {

/// One application for all inputs; a delegate and its window for each start.
class Desktop : public QApplication, public ScaleApplication
{
public:
    explicit Desktop(int &argumentCount)
        : QApplication(argumentCount, nullptr)
    {
        QLoggingCategory::setFilterRules(QStringLiteral("postalscale*=false"));
    }

    ScaleDelegate *delegate() const override { return current; }
    HidDevices &devices() override { return machine; }

    /// The options that are kept when the program has been started and closed.
    QList<int> start()
    {
        Settings settings;
        PostalScaleAppDelegate appDelegate(BundleInformation::load({}), settings, browsers);
        current = &appDelegate;
        appDelegate.awakeFromNib();
        appDelegate.applicationDidFinishLaunching();
        appDelegate.window->show();
        processEvents();
        trouble = settings.trouble();
        const QList<int> options = settings.selectedOptions();
        settings.setSelectedOptions(options);
        current = nullptr;
        return options;
    }

    QString trouble;

private:
    SystemHidDevices machine;
    BrowserLink browsers;
    ScaleDelegate *current = nullptr;
};

Desktop &desktop()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    storedsettings::forget(); // the user's folders are the test's own from here on
    static int argumentCount = 0;
    // Never destroyed: at the end the toolkit's own globals go first.
    static Desktop *const only = new Desktop(argumentCount);
    return *only;
}

bool wasKept(const QByteArray &bytes)
{
    const QDir folder(QFileInfo(storedsettings::file()).path());
    for (const QString &name : folder.entryList({QStringLiteral("*.damaged-*")}, QDir::Files)) {
        QFile file(folder.filePath(name));
        if (file.open(QIODevice::ReadOnly) && file.readAll() == bytes)
            return true;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    Desktop &program = desktop();
    const QByteArray text(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    storedsettings::store(text);
    const QList<int> options = program.start();
    require(program.trouble.isEmpty() || wasKept(text), "a damaged file is kept as it was");
    require(program.start() == options, "what was kept comes back");
    require(program.trouble.isEmpty(), "the program can read what it has written");
    return 0;
}
