#pragma once

#include "ProfileFolders.h"
#include "SettingNames.h"

#include <optional>
#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

/// What a camera gets when it is plugged in: the profile that is assigned to it or, without one,
/// the picture values that are saved under its serial number.
struct AssignedSettings
{
    Q_DECLARE_TR_FUNCTIONS(AssignedSettings)

public:
    SettingValues values;
    QString profile; ///< its name; empty for saved picture values

    /// @return without a value when there is nothing for this camera
    [[nodiscard]] static Result<std::optional<AssignedSettings>>
    of(const ProfileFolders& folders, const QString& serial, const QString& model);

    /// For people.
    [[nodiscard]] QString title() const;
    [[nodiscard]] QJsonObject toJson() const;
};
