#include "NodeUsers.h"

#include <algorithm>
#include <array>
#include <climits>
#include <QDir>
#include <QFile>
#include <unistd.h>

namespace {

constexpr int kMostNames = 2;

QByteArray linkTarget(const QString& link)
{
    std::array<char, PATH_MAX> target{};
    const ssize_t length =
        ::readlink(QFile::encodeName(link).constData(), target.data(), target.size());
    return length > 0 ? QByteArray(target.data(), static_cast<int>(length)) : QByteArray();
}

bool hasOpen(const QString& process, const QByteArray& node)
{
    // The list is empty for a process of another user.
    const QDir directory(process + QStringLiteral("/fd"));
    const QStringList descriptors = directory.entryList(QDir::Files | QDir::System);
    return std::any_of(descriptors.begin(), descriptors.end(), [&](const QString& descriptor) {
        return linkTarget(directory.filePath(descriptor)) == node;
    });
}

/// A process chooses its name itself: what a text could take for markup is left out.
QString nameOf(const QString& process)
{
    QFile file(process + QStringLiteral("/comm"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    QString name;
    for (const QChar letter : text) {
        if (letter.isPrint() && letter != QLatin1Char('<') && letter != QLatin1Char('>'))
            name += letter;
    }
    return name.trimmed();
}

} // namespace

QStringList programsThatUse(const QString& node)
{
    const QByteArray path = QFile::encodeName(node);
    const QDir processes(QStringLiteral("/proc"));
    QStringList names;
    const QStringList numbers =
        processes.entryList({QStringLiteral("[0-9]*")}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& number : numbers) {
        const QString process = processes.filePath(number);
        if (number.toLongLong() == ::getpid() || !hasOpen(process, path))
            continue;
        const QString name = nameOf(process);
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
        if (names.size() == kMostNames)
            break;
    }
    return names;
}
