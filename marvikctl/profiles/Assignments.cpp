#include "Assignments.h"

#include "FileLock.h"
#include "JsonLines.h"
#include "ProfileDocument.h"
#include "WholeFile.h"

#include <chrono>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

constexpr std::chrono::seconds kLockTimeout{5};
const QString kSerialsKey = QStringLiteral("serials");
const QString kModelsKey = QStringLiteral("models");
const QString kAllKey = QStringLiteral("all");

QJsonObject objectOf(const QMap<QString, QString>& map)
{
    QJsonObject object;
    for (auto each = map.begin(); each != map.end(); ++each)
        object.insert(each.key(), each.value());
    return object;
}

} // namespace

QString Assignments::profileIn(const Rules& user, const Rules& site, const QString& serial,
                               const QString& model)
{
    for (const QString& name :
         {user.serials.value(serial), site.serials.value(serial), user.models.value(model),
          site.models.value(model), user.all, site.all}) {
        if (!name.isEmpty())
            return name;
    }
    return {};
}

Result<QString> Assignments::profileOf(const QString& serial, const QString& model) const
{
    const auto user = read(ProfileStore::Owner::User);
    if (!user)
        return user.failure();
    const auto site = read(ProfileStore::Owner::Site);
    if (!site)
        return site.failure();
    return profileIn(*user, *site, serial, model);
}

QString Assignments::fileOf(ProfileStore::Owner owner) const
{
    return owner == ProfileStore::Owner::User ? m_folders.user.assignments
                                              : m_folders.site.assignments;
}

Result<Assignments::Rules> Assignments::read(ProfileStore::Owner owner) const
{
    const QString file = fileOf(owner);
    if (!QFileInfo::exists(file))
        return Rules();
    const auto text = WholeFile::read(file);
    if (!text)
        return text.failure();
    return parse(*text, file);
}

Result<bool> Assignments::change(ProfileStore::Owner owner,
                                 const std::function<void(Rules&)>& edit) const
{
    const QString file = fileOf(owner);
    const QString folder = QFileInfo(file).absolutePath();
    FileLock lock;
    if (!QDir().mkpath(folder) || !lock.acquire(file + QStringLiteral(".lock"), kLockTimeout))
        return Failure{Failure::Kind::File, tr("%1 cannot be changed").arg(file), {}};
    const auto before = read(owner);
    if (!before)
        return before.failure();
    Rules after = *before;
    edit(after);
    if (after == *before)
        return false;
    if (const auto failure = WholeFile::write(file, QJsonDocument(toJson(after)).toJson()))
        return *failure;
    return true;
}

Result<Assignments::Rules> Assignments::parse(const QByteArray& text, const QString& name)
{
    const auto root = ProfileDocument::parse(text, name);
    if (!root)
        return root.failure();
    Rules rules;
    for (auto member = root->begin(); member != root->end(); ++member) {
        const int line = JsonLines::ofKey(text, member.key());
        if (member.key() == ProfileDocument::schemaKey())
            continue;
        if (member.key() == kAllKey && member.value().isString()) {
            rules.all = member.value().toString();
            continue;
        }
        const bool isMap = member.key() == kSerialsKey || member.key() == kModelsKey;
        if (!isMap || !member.value().isObject())
            return ProfileDocument::refusal(name, line,
                                            tr("unknown member \"%1\"").arg(member.key()));
        auto& map = member.key() == kSerialsKey ? rules.serials : rules.models;
        const QJsonObject entries = member.value().toObject();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            map.insert(entry.key(), entry.value().toString());
    }
    return rules;
}

QJsonObject Assignments::toJson(const Rules& rules)
{
    QJsonObject object{{ProfileDocument::schemaKey(), ProfileDocument::kSchema},
                       {kSerialsKey, objectOf(rules.serials)},
                       {kModelsKey, objectOf(rules.models)}};
    if (!rules.all.isEmpty())
        object.insert(kAllKey, rules.all);
    return object;
}
