// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "base/RegularFile.h"

#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 kibibyte = 1024;
constexpr mode_t newFileMode = 0666;

const QString notRegular = QStringLiteral("It is not a regular file");

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

QString tooLarge(qint64 most)
{
    const bool isWhole = most % kibibyte == 0;
    return QStringLiteral("It is larger than %1 %2")
        .arg(isWhole ? most / kibibyte : most)
        .arg(isWhole ? QStringLiteral("MiB") : QStringLiteral("KiB"));
}

/// A pipe that nobody reads, or a device whose driver is missing, cannot be opened at all.
QString openingError()
{
    return errno == ENXIO || errno == ENODEV ? notRegular : systemError();
}

} // namespace

std::optional<QByteArray> readRegularFile(const QString &path, qint64 most, QString *trouble)
{
    // Non-blocking: opening a pipe waits for its other end.
    const int descriptor =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0) {
        *trouble = openingError();
        return {};
    }
    QFile file;
    file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    struct stat facts = {};
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        *trouble = notRegular;
        return {};
    }
    // The kernel's own files have no size before they are read, and some no end.
    if (facts.st_size > most * kibibyte) {
        *trouble = tooLarge(most);
        return {};
    }
    QByteArray bytes = file.read(most * kibibyte + 1);
    if (file.error() != QFileDevice::NoError)
        *trouble = file.errorString();
    else if (bytes.size() > most * kibibyte)
        *trouble = tooLarge(most);
    else
        return bytes;
    return {};
}

bool openEmptied(QFile &file, const QString &path, QString *trouble)
{
    const int descriptor =
        open(QFile::encodeName(path).constData(),
             O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, newFileMode);
    if (descriptor < 0) {
        *trouble = openingError();
        return false;
    }
    struct stat facts = {};
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode))
        *trouble = notRegular;
    else if (ftruncate(descriptor, 0) != 0)
        *trouble = systemError();
    else
        return file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered,
                         QFileDevice::AutoCloseHandle);
    close(descriptor);
    return false;
}

bool appendWhole(QFile &file, QByteArray line, QString *trouble)
{
    const qint64 before = file.size();
    // A disk that is nearly full takes a part, and only says why when it is given the rest.
    while (!line.isEmpty()) {
        const qint64 taken = file.write(line);
        if (taken <= 0)
            break;
        line.remove(0, taken);
    }
    if (line.isEmpty())
        return true;
    *trouble = file.errorString();
    // Half a line may read as another one.
    file.resize(before);
    file.close();
    return false;
}

QString refusalOf(const QString &path, qint64 most)
{
    struct stat facts = {};
    if (stat(QFile::encodeName(path).constData(), &facts) != 0)
        return {};
    if (!S_ISREG(facts.st_mode))
        return notRegular;
    return facts.st_size > most * kibibyte ? tooLarge(most) : QString();
}
