#include "ProfileCommand.h"

#include "NearestWord.h"
#include "ProfileFile.h"
#include "ProfileFiles.h"
#include "ProfileStore.h"
#include "SettingsWriter.h"

namespace {

/// What "profile" does with the cameras that are chosen.
using CameraWork = std::function<void(CameraLink&, CameraResult&)>;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(ProfileCommand)
};

const QStringList& verbs()
{
    static const QStringList all{"save",   "show", "diff",   "apply",   "export",
                                 "import", "list", "assign", "unassign"};
    return all;
}

int argumentsOf(const QString& verb)
{
    return verb == QLatin1String("list") || verb == QLatin1String("unassign") ? 0 : 1;
}

std::optional<Failure> checkArguments(const QStringList& arguments)
{
    const QString verb = arguments.value(0);
    if (!verbs().contains(verb)) {
        const QString nearest = NearestWord::in(verbs(), verb);
        return Failure{Failure::Kind::Usage, Texts::tr("what to do with profiles?"),
                       nearest.isEmpty() ? Texts::tr("One of %1.").arg(verbs().join(", "))
                                         : Texts::tr("Did you mean \"%1\"?").arg(nearest)};
    }
    const bool mayHaveKeys = verb == QLatin1String("save");
    const int given = arguments.size() - 1;
    if (given < argumentsOf(verb) || (given > argumentsOf(verb) && !mayHaveKeys))
        return Failure{Failure::Kind::Usage,
                       argumentsOf(verb) == 0
                           ? Texts::tr("profile %1 takes no argument").arg(verb)
                           : Texts::tr("profile %1 takes one argument").arg(verb),
                       {}};
    return std::nullopt;
}

/// The settings of a camera that a profile can hold; of all keys or of some.
Result<SettingValues> readSettings(CameraLink& link, const QStringList& keys)
{
    const auto registers = link.read(SettingNames::registersOf(keys));
    if (!registers)
        return registers.failure();
    const SettingValues all = ProfileFile::storable(SettingNames::valuesOf(*registers));
    SettingValues chosen;
    for (const QString& key : keys) {
        if (all.contains(key))
            chosen.insert(key, all.value(key));
    }
    return chosen;
}

CameraWork diffWork(const SettingValues& wanted)
{
    return [wanted](CameraLink& link, CameraResult& result) {
        SettingsWriter::apply(link, wanted, SettingsWriter::Mode::DryRun, result);
    };
}

CameraWork saveWork(const Invocation& invocation, const QString& name, const QStringList& keys)
{
    return [&invocation, name, keys](CameraLink& link, CameraResult& result) {
        const auto values = readSettings(link, keys);
        if (!values) {
            result.fail(values.failure());
            return;
        }
        result.details.insert(QStringLiteral("settings"), ProfileFile::settings(*values));
        for (const SettingKey& key : SettingNames::keys()) {
            if (values->contains(key.name))
                result.rows.append({key.name, SettingNames::format(key, values->value(key.name))});
        }
        if (invocation.dryRun)
            return;
        const auto owner = invocation.site ? ProfileStore::Owner::Site : ProfileStore::Owner::User;
        const auto written =
            ProfileStore(ProfileFolders::ofThisSystem()).write(name, *values, owner);
        if (!written)
            result.fail(written.failure());
        else if (!*written)
            result.outcome = CameraResult::Outcome::NothingToDo;
    };
}

/// The keys that are named, or all.
Result<QStringList> keysOf(const QStringList& names)
{
    for (const QString& name : names) {
        const auto key = SettingNames::find(name);
        if (!key)
            return key.failure();
    }
    return names.isEmpty() ? SettingNames::names() : names;
}

} // namespace

void ProfileCommand::run(const Invocation& invocation, Report& report)
{
    if (const auto failure = checkArguments(invocation.arguments)) {
        report.fail(*failure);
        return;
    }
    const QString verb = invocation.arguments.first();
    const QString argument = invocation.arguments.value(1);
    report.set(QStringLiteral("verb"), verb);
    ProfileFiles files(invocation, report);
    if (verb == QLatin1String("list")) {
        files.list();
    } else if (verb == QLatin1String("show")) {
        files.show(argument);
    } else if (verb == QLatin1String("export")) {
        files.exportTo(argument);
    } else if (verb == QLatin1String("import")) {
        files.import(argument);
    } else if (verb == QLatin1String("assign")) {
        files.assign(argument);
    } else if (verb == QLatin1String("unassign")) {
        files.unassign();
    } else if (verb == QLatin1String("save")) {
        const auto keys = keysOf(invocation.arguments.mid(2));
        const auto wrong = ProfileStore::checkName(argument);
        if (wrong || !keys)
            report.fail(wrong ? *wrong : keys.failure());
        else if (invocation.all || invocation.serials.size() > 1)
            report.fail({Failure::Kind::Usage, tr("a profile is saved from one camera"), {}});
        else
            forEachChosen(invocation, report, saveWork(invocation, argument, *keys));
    } else {
        const auto wanted = ProfileStore(ProfileFolders::ofThisSystem()).read(argument);
        if (!wanted) {
            report.fail(wanted.failure());
            return;
        }
        const bool isDiff = verb == QLatin1String("diff");
        if (isDiff)
            report.setAnswer();
        const auto mode =
            invocation.dryRun ? SettingsWriter::Mode::DryRun : SettingsWriter::Mode::Write;
        forEachChosen(
            invocation, report,
            isDiff ? diffWork(*wanted) : [&](CameraLink& link, CameraResult& result) {
                SettingsWriter::apply(link, *wanted, mode, result);
            });
    }
}
