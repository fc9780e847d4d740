#include "ActiveGroups.h"
#include "linux/UdevHandles.h"
#include "SystemFacts.h"

#include <algorithm>
#include <array>
#include <grp.h>
#include <pwd.h>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QtEndian>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr std::array kRuleFolders{"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/lib/udev/rules.d",
                                  "/lib/udev/rules.d"};

QString userOf(uid_t id)
{
    const passwd* account = ::getpwuid(id);
    return account ? QString::fromLocal8Bit(account->pw_name) : QString::number(id);
}

QString groupOf(gid_t id)
{
    const group* entry = ::getgrgid(id);
    return entry ? QString::fromLocal8Bit(entry->gr_name) : QString::number(id);
}

QString permissionText(unsigned bits)
{
    QString text;
    text += QLatin1Char((bits & 4U) != 0 ? 'r' : '-');
    text += QLatin1Char((bits & 2U) != 0 ? 'w' : '-');
    text += QLatin1Char((bits & 1U) != 0 ? 'x' : '-');
    return text;
}

/// The entries for single users and groups, as "user:alice:rw-". The kernel keeps the list as an
/// attribute: a version of four bytes, then eight bytes for each entry. See acl(5).
QJsonArray accessList(const QString& path)
{
    constexpr std::size_t headerSize = 4;
    constexpr std::size_t entrySize = 8;
    constexpr quint16 userTag = 2;
    constexpr quint16 groupTag = 8;
    std::array<char, 4096> bytes{};
    const ssize_t size = ::getxattr(QFile::encodeName(path).constData(), "system.posix_acl_access",
                                    bytes.data(), bytes.size());
    QJsonArray entries;
    for (std::size_t at = headerSize;
         at + entrySize <= static_cast<std::size_t>(std::max<ssize_t>(size, 0)); at += entrySize) {
        const auto tag = qFromLittleEndian<quint16>(&bytes[at]);
        const auto permissions = qFromLittleEndian<quint16>(&bytes[at + 2]);
        const auto id = qFromLittleEndian<quint32>(&bytes[at + 4]);
        if (tag == userTag)
            entries.append(
                QStringLiteral("user:%1:%2").arg(userOf(id), permissionText(permissions)));
        if (tag == groupTag)
            entries.append(
                QStringLiteral("group:%1:%2").arg(groupOf(id), permissionText(permissions)));
    }
    return entries;
}

/// What the rules have done with the node.
QJsonArray tagsOf(const QString& path)
{
    QJsonArray tags;
    struct stat status = {};
    const UdevContext context(udev_new());
    if (!context || ::stat(QFile::encodeName(path).constData(), &status) != 0)
        return tags;
    const UdevDevice device(udev_device_new_from_devnum(context.get(), 'c', status.st_rdev));
    if (!device)
        return tags;
    udev_list_entry* entry = nullptr;
    udev_list_entry_foreach(entry, udev_device_get_tags_list_entry(device.get()))
        tags.append(QString::fromLocal8Bit(udev_list_entry_get_name(entry)));
    return tags;
}

} // namespace

QString SystemFacts::userName()
{
    return userOf(::geteuid());
}

QJsonObject SystemFacts::user()
{
    QJsonArray groups;
    for (const gid_t id : activeGroups())
        groups.append(groupOf(id));
    return {{QStringLiteral("name"), userName()},
            {QStringLiteral("group"), groupOf(::getegid())},
            {QStringLiteral("groups"), groups}};
}

QJsonObject SystemFacts::node(const QString& path)
{
    QJsonObject object{{QStringLiteral("path"), path}};
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return object;
    object.insert(QStringLiteral("owner"), userOf(status.st_uid));
    object.insert(QStringLiteral("group"), groupOf(status.st_gid));
    object.insert(QStringLiteral("mode"),
                  QStringLiteral("%1").arg(status.st_mode & 07777U, 4, 8, QLatin1Char('0')));
    object.insert(QStringLiteral("accessList"), accessList(path));
    object.insert(QStringLiteral("tags"), tagsOf(path));
    return object;
}

QJsonObject SystemFacts::rules()
{
    QJsonArray files;
    for (const char* folder : kRuleFolders) {
        const QString file = QString::fromLatin1(folder) + QStringLiteral("/70-marviktools.rules");
        if (QFileInfo::exists(file))
            files.append(file);
    }
    return {{QStringLiteral("files"), files}};
}
