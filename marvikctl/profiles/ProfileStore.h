#pragma once

#include "ProfileFolders.h"
#include "SettingNames.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QString>

/// The profiles of the user and of the site. A profile of the user hides that of the site with the
/// same name. A file is replaced as a whole: a write that is interrupted leaves the old one.
class ProfileStore
{
    Q_DECLARE_TR_FUNCTIONS(ProfileStore)

public:
    enum class Owner { User, Site };
    struct Entry
    {
        QString name;
        QString file;
        Owner owner = Owner::User;
    };

    explicit ProfileStore(ProfileFolders folders)
        : m_folders(std::move(folders))
    {
    }

    /// "user" or "site".
    [[nodiscard]] static QString wordOf(Owner owner);
    /// Why this is no name of a profile.
    [[nodiscard]] static std::optional<Failure> checkName(const QString& name);

    /// By name; those that are hidden are left out.
    [[nodiscard]] QList<Entry> list() const;
    [[nodiscard]] Result<Entry> find(const QString& name) const;
    [[nodiscard]] Result<SettingValues> read(const QString& name) const;
    /// @return whether the file has changed
    [[nodiscard]] Result<bool> write(const QString& name, const SettingValues& values,
                                     Owner owner) const;

private:
    ProfileFolders m_folders;
};
