#include "CommandTable.h"

#include "ApplyCommand.h"
#include "FirmwareCommand.h"
#include "GetCommand.h"
#include "HelpCommand.h"
#include "IdentifyCommand.h"
#include "InfoCommand.h"
#include "ListCommand.h"
#include "MetricsCommand.h"
#include "ProfileCommand.h"
#include "ResetCommand.h"
#include "SaveCommand.h"
#include "SetCommand.h"
#include "SupportCommand.h"
#include "VersionCommand.h"
#include "WatchCommand.h"

#include <algorithm>
#include <QCoreApplication>

namespace {

template <typename Kind>
std::unique_ptr<Command> make()
{
    return std::make_unique<Kind>();
}

constexpr CommandRow kRows[]{
    {"list", "", QT_TRANSLATE_NOOP("CommandTable", "list the cameras"), "device all",
     make<ListCommand>},
    {"info", "", QT_TRANSLATE_NOOP("CommandTable", "what a camera reports about itself"),
     "device all", make<InfoCommand>},
    {"get", "[KEY...]", QT_TRANSLATE_NOOP("CommandTable", "print settings"), "device all",
     make<GetCommand>},
    {"set", "KEY=VALUE...", QT_TRANSLATE_NOOP("CommandTable", "change settings"),
     "device all dry-run", make<SetCommand>},
    {"reset", "", QT_TRANSLATE_NOOP("CommandTable", "set all settings to their defaults"),
     "device all dry-run", make<ResetCommand>},
    {"save", "",
     QT_TRANSLATE_NOOP("CommandTable", "keep the picture values for the next time the camera is "
                                       "plugged in"),
     "device all dry-run", make<SaveCommand>},
    {"profile", "VERB [NAME|FILE]",
     QT_TRANSLATE_NOOP("CommandTable", "save, show, diff, apply, export, import, list, assign or "
                                       "unassign profiles"),
     "device all model site dry-run output", make<ProfileCommand>},
    {"apply", "", QT_TRANSLATE_NOOP("CommandTable", "give cameras what is assigned to them"),
     "device all once dry-run", make<ApplyCommand>},
    {"watch", "",
     QT_TRANSLATE_NOOP("CommandTable", "apply to every camera that is or gets plugged in"),
     "dry-run", make<WatchCommand>},
    {"firmware", "check | install FILE",
     QT_TRANSLATE_NOOP("CommandTable", "ask for newer firmware, or install an image"),
     "device all dry-run reinstall parallel", make<FirmwareCommand>},
    {"identify", "", QT_TRANSLATE_NOOP("CommandTable", "make a camera recognisable"), "device",
     make<IdentifyCommand>},
    {"report", "", QT_TRANSLATE_NOOP("CommandTable", "collect what support needs to know"),
     "device all output redact", make<SupportCommand>},
    {"metrics", "", QT_TRANSLATE_NOOP("CommandTable", "print metrics for Prometheus"),
     "device all output", make<MetricsCommand>},
    {"help", "[COMMAND]", QT_TRANSLATE_NOOP("CommandTable", "print help"), "", make<HelpCommand>},
    {"version", "", QT_TRANSLATE_NOOP("CommandTable", "print the version"), "",
     make<VersionCommand>},
};

} // namespace

ConstRange<CommandRow> CommandTable::rows()
{
    return ConstRange(kRows);
}

const CommandRow* CommandTable::find(const QString& name)
{
    const auto* const found =
        std::find_if(std::begin(kRows), std::end(kRows),
                     [&name](const CommandRow& row) { return name == QLatin1String(row.name); });
    return found == std::end(kRows) ? nullptr : found;
}

QStringList CommandTable::names()
{
    QStringList names;
    for (const CommandRow& row : kRows)
        names << QString::fromLatin1(row.name);
    return names;
}

QString CommandTable::summary(const CommandRow& row)
{
    return QCoreApplication::translate("CommandTable", row.summary);
}
