#pragma once

#include "SettingNames.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

/// The text of a profile: settings by their names, of all or of some. It has no serial number, so
/// it fits every camera.
///
///     { "schema": 1, "settings": { "fov": 90, "mirror": "on", "brightness": "60%" } }
class ProfileFile
{
    Q_DECLARE_TR_FUNCTIONS(ProfileFile)

public:
    /// @param name of the file, for the text of a failure, which names the line too
    [[nodiscard]] static Result<SettingValues> parse(const QByteArray& text, const QString& name);
    [[nodiscard]] static QByteArray text(const SettingValues& values);
    /// The settings as the members of a document.
    [[nodiscard]] static QJsonObject settings(const SettingValues& values);
    /// What of the values a profile can hold: those that can be given back, without what follows
    /// from others.
    [[nodiscard]] static SettingValues storable(const SettingValues& values);

private:
    [[nodiscard]] static std::optional<Failure>
    checkFrame(const QJsonObject& root, const QByteArray& text, const QString& name);
};
