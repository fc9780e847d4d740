#pragma once

#include "Result.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QJsonObject>
#include <QString>

/// What a profile and the rules that assign profiles have in common: a JSON object that names its
/// schema. Whatever is wrong is refused with file and line.
class ProfileDocument
{
    Q_DECLARE_TR_FUNCTIONS(ProfileDocument)

public:
    static constexpr int kSchema = 1;
    [[nodiscard]] static QString schemaKey() { return QStringLiteral("schema"); }

    /// @param name of the file, for the refusal
    [[nodiscard]] static Result<QJsonObject> parse(const QByteArray& text, const QString& name);
    [[nodiscard]] static Failure refusal(const QString& name, int line, const QString& why,
                                         const QString& hint = {});
};
