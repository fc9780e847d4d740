#include "CommandLine.h"

#include "Command.h"
#include "CommandTable.h"
#include "NearestWord.h"
#include "OptionTable.h"

#include <cmath>
#include <optional>
#include <QCommandLineParser>

namespace {

constexpr double kMaxTimeoutSeconds = 3600;
constexpr int kMaxParallel = 16;

Failure usage(const QString& message, const QString& hint)
{
    return {Failure::Kind::Usage, message, hint};
}

} // namespace

Result<Invocation> CommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    for (const OptionRow& row : OptionTable::rows())
        parser.addOption(OptionTable::make(row));
    const QString seeHelp = tr("\"marvikctl help\" lists the commands.");
    if (!parser.parse(arguments))
        return usage(parser.errorText(), seeHelp);

    Invocation invocation;
    invocation.arguments = parser.positionalArguments();
    if (!invocation.arguments.isEmpty())
        invocation.command = invocation.arguments.takeFirst();
    if (parser.isSet(QStringLiteral("version"))) {
        invocation.command = QStringLiteral("version");
        invocation.arguments.clear();
    } else if (parser.isSet(QStringLiteral("help"))) {
        invocation.arguments =
            invocation.command.isEmpty() ? QStringList() : QStringList(invocation.command);
        invocation.command = QStringLiteral("help");
    }
    if (invocation.command.isEmpty())
        return usage(tr("no command is given"), seeHelp);
    const CommandRow* row = CommandTable::find(invocation.command);
    if (!row) {
        const QString nearest = NearestWord::in(CommandTable::names(), invocation.command);
        return usage(tr("unknown command \"%1\"").arg(invocation.command),
                     nearest.isEmpty() ? seeHelp : tr("Did you mean \"%1\"?").arg(nearest));
    }
    const bool isHelp = parser.isSet(QStringLiteral("help"));
    if (const auto failure = isHelp ? std::nullopt : checkOptions(parser, *row))
        return *failure;

    invocation.serials = parser.values(QStringLiteral("device"));
    invocation.all = parser.isSet(QStringLiteral("all"));
    invocation.json = parser.isSet(QStringLiteral("json"));
    invocation.jsonProgress = parser.isSet(QStringLiteral("json-progress"));
    invocation.dryRun = parser.isSet(QStringLiteral("dry-run"));
    invocation.quiet = parser.isSet(QStringLiteral("quiet"));
    invocation.verbose = parser.isSet(QStringLiteral("verbose"));
    invocation.reinstall = parser.isSet(QStringLiteral("reinstall"));
    invocation.once = parser.isSet(QStringLiteral("once"));
    invocation.redact = parser.isSet(QStringLiteral("redact"));
    invocation.site = parser.isSet(QStringLiteral("site"));
    invocation.model = parser.value(QStringLiteral("model"));
    invocation.output = parser.value(QStringLiteral("output"));
    if (const auto failure = readNumbers(parser, invocation))
        return *failure;
    if (invocation.all && !invocation.serials.isEmpty())
        return usage(tr("--all and --device exclude each other"), {});
    if (invocation.serials.contains(QString()))
        return usage(tr("--device needs a serial number"), {});
    return invocation;
}

std::optional<Failure> CommandLine::checkOptions(const QCommandLineParser& parser,
                                                 const CommandRow& row)
{
    const QStringList own = QString::fromLatin1(row.options).split(QLatin1Char(' '));
    for (const OptionRow& option : OptionTable::rows()) {
        const QString name = QString::fromLatin1(option.name);
        if (parser.isSet(name) && !option.isCommon && !own.contains(name))
            return usage(
                tr("the command \"%1\" has no option --%2")
                    .arg(QString::fromLatin1(row.name), name),
                tr("\"marvikctl help %1\" lists its options.").arg(QString::fromLatin1(row.name)));
    }
    return std::nullopt;
}

std::optional<Failure> CommandLine::readNumbers(const QCommandLineParser& parser,
                                                Invocation& invocation)
{
    if (parser.isSet(QStringLiteral("timeout"))) {
        bool isNumber = false;
        const double seconds = parser.value(QStringLiteral("timeout")).toDouble(&isNumber);
        if (!isNumber || !(seconds >= 0 && seconds <= kMaxTimeoutSeconds))
            return usage(tr("\"%1\" is no time-out").arg(parser.value(QStringLiteral("timeout"))),
                         tr("Give a number of seconds, for example 2.5."));
        invocation.timeout = std::chrono::milliseconds(std::lround(seconds * 1000));
    }
    if (parser.isSet(QStringLiteral("parallel"))) {
        bool isNumber = false;
        invocation.parallel = parser.value(QStringLiteral("parallel")).toInt(&isNumber);
        if (!isNumber || invocation.parallel < 1 || invocation.parallel > kMaxParallel)
            return usage(tr("--parallel takes a number from 1 to %1").arg(kMaxParallel), {});
    }
    return std::nullopt;
}
