#include "ActiveGroups.h"
#include "FileDescriptor.h"
#include "NodeAccess.h"
#include "PermissionAdvice.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <QFile>
#include <QFileInfo>
#include <unistd.h>

namespace {

constexpr std::array kRuleFolders{"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/lib/udev/rules.d",
                                  "/lib/udev/rules.d"};

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(NodeAccess)
};

bool isRuleInstalled()
{
    return std::any_of(kRuleFolders.begin(), kRuleFolders.end(), [](const char* folder) {
        return QFileInfo::exists(QLatin1String(folder) + QStringLiteral("/70-marviktools.rules"));
    });
}

PermissionAdvice::Facts factsOf(const QString& node, NodeAccess::Interface which)
{
    PermissionAdvice::Facts facts;
    facts.isRuleInstalled = isRuleInstalled();
    // The groups of the rules: that of the control interface is set by 70-marviktools.rules, that
    // of video devices by the system's own.
    facts.neededGroup = which == NodeAccess::Interface::Control ? QStringLiteral("plugdev")
                                                                : QStringLiteral("video");
    facts.nodeGroup = QFileInfo(node).group();
    const passwd* account = ::getpwuid(::geteuid());
    facts.user = account ? QString::fromLocal8Bit(account->pw_name) : QString::number(::geteuid());
    const group* needed = ::getgrnam(facts.neededGroup.toLatin1().constData());
    if (!needed)
        return facts;
    const gid_t id = needed->gr_gid;
    const std::vector<gid_t> active = activeGroups();
    facts.isActive =
        ::getegid() == id || std::find(active.begin(), active.end(), id) != active.end();
    bool isMember = account && account->pw_gid == id;
    for (char** member = needed->gr_mem; *member; ++member)
        isMember = isMember || facts.user == QString::fromLocal8Bit(*member);
    facts.isInGroup = isMember || facts.isActive;
    return facts;
}

} // namespace

Failure NodeAccess::explain(const QString& node, Interface which)
{
    const FileDescriptor descriptor(
        ::open(QFile::encodeName(node).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    const int error = descriptor ? 0 : errno;
    switch (error) {
    case EACCES:
    case EPERM:
        return {Failure::Kind::NoPermission, Texts::tr("no permission to open %1").arg(node),
                PermissionAdvice::hint(factsOf(node, which))};
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return {Failure::Kind::Gone, Texts::tr("the camera has left the bus"), {}};
    case 0:
        // It can be opened now, so something else has kept it for a moment.
        return {Failure::Kind::NotAnswered, Texts::tr("%1 could not be opened").arg(node), {}};
    default:
        return {Failure::Kind::NotAnswered,
                Texts::tr("%1 cannot be opened: %2")
                    .arg(node, QString::fromLocal8Bit(std::strerror(error))),
                {}};
    }
}
