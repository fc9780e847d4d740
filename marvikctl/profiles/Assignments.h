#pragma once

#include "ProfileFolders.h"
#include "ProfileStore.h"
#include "Result.h"

#include <functional>
#include <QCoreApplication>
#include <QJsonObject>
#include <QMap>
#include <QString>

/// Which profile a camera gets: by its serial number, by its model, or as every camera. The
/// narrower rule wins, and of two that are equal that of the user.
class Assignments
{
    Q_DECLARE_TR_FUNCTIONS(Assignments)

public:
    /// The rules of one file; values are names of profiles.
    struct Rules
    {
        QMap<QString, QString> serials;
        QMap<QString, QString> models;
        QString all; ///< empty for none

        friend bool operator==(const Rules& a, const Rules& b)
        {
            return a.serials == b.serials && a.models == b.models && a.all == b.all;
        }
    };

    explicit Assignments(ProfileFolders folders)
        : m_folders(std::move(folders))
    {
    }

    /// The profile of a camera; empty when none is assigned.
    [[nodiscard]] Result<QString> profileOf(const QString& serial, const QString& model) const;
    [[nodiscard]] static QString profileIn(const Rules& user, const Rules& site,
                                           const QString& serial, const QString& model);

    [[nodiscard]] Result<Rules> read(ProfileStore::Owner owner) const;
    /// Changes the rules while no other process does.
    /// @return whether something has changed
    [[nodiscard]] Result<bool> change(ProfileStore::Owner owner,
                                      const std::function<void(Rules&)>& edit) const;

    [[nodiscard]] static Result<Rules> parse(const QByteArray& text, const QString& name);
    [[nodiscard]] static QJsonObject toJson(const Rules& rules);

private:
    [[nodiscard]] QString fileOf(ProfileStore::Owner owner) const;

    ProfileFolders m_folders;
};
