#pragma once

#include "Result.h"

#include <optional>
#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/// Small files that are read and replaced as a whole: a write that is interrupted leaves the old
/// one.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(WholeFile)

public:
    [[nodiscard]] static Result<QByteArray> read(const QString& file);
    [[nodiscard]] static std::optional<Failure> write(const QString& file, const QByteArray& text);
};
