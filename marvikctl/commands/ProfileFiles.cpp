#include "ProfileFiles.h"

#include "Assignments.h"
#include "ProfileFile.h"
#include "ProfileStore.h"
#include "WholeFile.h"

#include <QFileInfo>
#include <QJsonArray>

namespace {

ProfileStore::Owner ownerOf(const Invocation& invocation)
{
    return invocation.site ? ProfileStore::Owner::Site : ProfileStore::Owner::User;
}

QJsonObject entryObject(const ProfileStore::Entry& entry)
{
    return {{QStringLiteral("name"), entry.name},
            {QStringLiteral("owner"), ProfileStore::wordOf(entry.owner)},
            {QStringLiteral("file"), entry.file}};
}

} // namespace

ProfileFiles::ProfileFiles(const Invocation& invocation, Report& report)
    : m_invocation(invocation)
    , m_report(report)
    , m_folders(ProfileFolders::ofThisSystem())
{
}

void ProfileFiles::setChanged(bool hasChanged)
{
    if (!hasChanged)
        m_report.setNothingToDo();
}

void ProfileFiles::list()
{
    const ProfileStore store(m_folders);
    QList<QStringList> table{{tr("PROFILE"), tr("OWNER"), tr("SETTINGS"), tr("FILE")}};
    QJsonArray profiles;
    const QList<ProfileStore::Entry> entries = store.list();
    for (const ProfileStore::Entry& entry : entries) {
        QJsonObject object = entryObject(entry);
        const auto values = store.read(entry.name);
        if (values) {
            object.insert(QStringLiteral("settings"), ProfileFile::settings(*values));
        } else {
            m_report.warn(values.failure());
            object.insert(QStringLiteral("error"), values.failure().toJson());
        }
        profiles.append(object);
        table.append({entry.name, ProfileStore::wordOf(entry.owner),
                      values ? QString::number(values->size()) : QStringLiteral("-"), entry.file});
    }
    QJsonObject assignments;
    for (const auto owner : {ProfileStore::Owner::User, ProfileStore::Owner::Site}) {
        const auto rules = Assignments(m_folders).read(owner);
        if (!rules) {
            m_report.warn(rules.failure());
            continue;
        }
        QJsonObject object = Assignments::toJson(*rules);
        object.remove(QStringLiteral("schema"));
        assignments.insert(ProfileStore::wordOf(owner), object);
    }
    m_report.set(QStringLiteral("profiles"), profiles);
    m_report.set(QStringLiteral("assignments"), assignments);
    m_report.setAnswer();
    if (!entries.isEmpty())
        m_report.setTable(table);
}

void ProfileFiles::show(const QString& argument)
{
    const ProfileStore store(m_folders);
    const auto entry = store.find(argument);
    const auto values = entry ? store.read(argument) : Result<SettingValues>(entry.failure());
    if (!values) {
        m_report.fail(values.failure());
        return;
    }
    QList<QStringList> table;
    for (const SettingKey& key : SettingNames::keys()) {
        if (values->contains(key.name))
            table.append({key.name, SettingNames::format(key, values->value(key.name))});
    }
    QJsonObject object = entryObject(*entry);
    object.insert(QStringLiteral("settings"), ProfileFile::settings(*values));
    m_report.set(QStringLiteral("profile"), object);
    m_report.setAnswer();
    m_report.setTable(table);
}

void ProfileFiles::exportTo(const QString& argument)
{
    const auto values = ProfileStore(m_folders).read(argument);
    if (!values) {
        m_report.fail(values.failure());
        return;
    }
    const QByteArray text = ProfileFile::text(*values);
    m_report.set(QStringLiteral("profile"),
                 QJsonObject{{QStringLiteral("name"), argument},
                             {QStringLiteral("settings"), ProfileFile::settings(*values)}});
    if (m_invocation.output.isEmpty())
        m_report.setText(QString::fromUtf8(text));
    else if (const auto failure = WholeFile::write(m_invocation.output, text))
        m_report.fail(*failure);
}

void ProfileFiles::import(const QString& argument)
{
    const auto text = WholeFile::read(argument);
    const auto values =
        text ? ProfileFile::parse(*text, argument) : Result<SettingValues>(text.failure());
    if (!values) {
        m_report.fail(values.failure());
        return;
    }
    const QString name = QFileInfo(argument).completeBaseName();
    const auto written = ProfileStore(m_folders).write(name, *values, ownerOf(m_invocation));
    if (!written) {
        m_report.fail(written.failure());
        return;
    }
    m_report.set(QStringLiteral("profile"),
                 QJsonObject{{QStringLiteral("name"), name},
                             {QStringLiteral("settings"), ProfileFile::settings(*values)}});
    setChanged(*written);
}

void ProfileFiles::assign(const QString& argument)
{
    // A rule that names no profile would do nothing without a word.
    const auto values = ProfileStore(m_folders).read(argument);
    if (values)
        changeRules(argument);
    else
        m_report.fail(values.failure());
}

void ProfileFiles::unassign()
{
    changeRules({});
}

void ProfileFiles::changeRules(const QString& profile)
{
    const bool hasChoice =
        m_invocation.all || !m_invocation.model.isEmpty() || !m_invocation.serials.isEmpty();
    if (!hasChoice) {
        m_report.fail({Failure::Kind::Usage, tr("for which cameras?"),
                       tr("Give --device, --model or --all.")});
        return;
    }
    const auto changed =
        Assignments(m_folders).change(ownerOf(m_invocation), [&](Assignments::Rules& rules) {
            const auto set = [&profile](QMap<QString, QString>& map, const QString& key) {
                if (profile.isEmpty())
                    map.remove(key);
                else
                    map.insert(key, profile);
            };
            for (const QString& serial : m_invocation.serials)
                set(rules.serials, serial);
            if (!m_invocation.model.isEmpty())
                set(rules.models, m_invocation.model);
            if (m_invocation.all)
                rules.all = profile;
        });
    if (changed)
        setChanged(*changed);
    else
        m_report.fail(changed.failure());
}
