#include "ProfileStore.h"

#include "NearestWord.h"
#include "ProfileFile.h"
#include "WholeFile.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>

namespace {

const QString kSuffix = QStringLiteral(".json");

} // namespace

QString ProfileStore::wordOf(Owner owner)
{
    return owner == Owner::User ? QStringLiteral("user") : QStringLiteral("site");
}

std::optional<Failure> ProfileStore::checkName(const QString& name)
{
    // A name becomes the name of a file on every platform.
    static const QRegularExpression allowed(QStringLiteral("^[A-Za-z0-9][A-Za-z0-9._-]{0,63}$"));
    if (allowed.match(name).hasMatch() && !name.endsWith(QLatin1Char('.')))
        return std::nullopt;
    return Failure{Failure::Kind::Usage, tr("\"%1\" is no name of a profile").arg(name),
                   tr("Take letters, digits, \".\", \"_\" and \"-\".")};
}

QList<ProfileStore::Entry> ProfileStore::list() const
{
    QMap<QString, Entry> entries;
    const auto add = [&entries](const QString& folder, Owner owner) {
        const QDir directory(folder);
        const QStringList files =
            directory.entryList({QLatin1Char('*') + kSuffix}, QDir::Files | QDir::Readable);
        for (const QString& file : files) {
            const QString name = file.chopped(kSuffix.size());
            if (!checkName(name))
                entries.insert(name, {name, directory.filePath(file), owner});
        }
    };
    add(m_folders.site.profiles, Owner::Site);
    add(m_folders.user.profiles, Owner::User);
    return entries.values();
}

Result<ProfileStore::Entry> ProfileStore::find(const QString& name) const
{
    QStringList names;
    const QList<Entry> entries = list();
    for (const Entry& entry : entries) {
        if (entry.name == name)
            return entry;
        names << entry.name;
    }
    const QString nearest = NearestWord::in(names, name);
    return Failure{Failure::Kind::Usage, tr("there is no profile \"%1\"").arg(name),
                   nearest.isEmpty() ? QString() : tr("Did you mean \"%1\"?").arg(nearest)};
}

Result<SettingValues> ProfileStore::read(const QString& name) const
{
    const auto entry = find(name);
    if (!entry)
        return entry.failure();
    const auto text = WholeFile::read(entry->file);
    if (!text)
        return text.failure();
    return ProfileFile::parse(*text, entry->file);
}

Result<bool> ProfileStore::write(const QString& name, const SettingValues& values,
                                 Owner owner) const
{
    if (const auto failure = checkName(name))
        return *failure;
    const QString folder = owner == Owner::User ? m_folders.user.profiles : m_folders.site.profiles;
    const QString file = folder + QLatin1Char('/') + name + kSuffix;
    if (QFileInfo::exists(file)) {
        const auto before = WholeFile::read(file);
        const auto known =
            before ? ProfileFile::parse(*before, file) : Result<SettingValues>(before.failure());
        if (known && *known == values)
            return false;
    }
    if (const auto failure = WholeFile::write(file, ProfileFile::text(values)))
        return *failure;
    return true;
}
