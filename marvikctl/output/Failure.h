#pragma once

#include "ExitCode.h"

#include <QJsonObject>
#include <QString>

/// Why something was not done: for a program by its kind, for a person by its texts.
struct Failure
{
    enum class Kind {
        NoCamera,
        NoPermission,
        Busy,
        Gone, ///< the camera has left the bus
        NotAnswered,
        Refused,
        Different, ///< the camera reports another value than the one that was written
        Conflict,  ///< settings that exclude each other
        File,
        Service, ///< the update service
        Stopped, ///< the user has ended the program before
        Usage,
    };

    Kind kind = Kind::Usage;
    QString message;
    QString hint; ///< what to do about it; may be empty

    /// The kind as a stable word: "no-permission".
    [[nodiscard]] QString code() const;
    [[nodiscard]] ExitCode exitCode() const;
    [[nodiscard]] QJsonObject toJson() const;
};
