#include "Failure.h"

#include <array>

namespace {

struct KindRow
{
    Failure::Kind kind;
    const char* code;
    ExitCode exitCode;
};

constexpr std::array kKinds{
    KindRow{Failure::Kind::NoCamera, "no-camera", ExitCode::NoCamera},
    KindRow{Failure::Kind::NoPermission, "no-permission", ExitCode::NoPermission},
    KindRow{Failure::Kind::Busy, "busy", ExitCode::Busy},
    KindRow{Failure::Kind::Gone, "gone", ExitCode::NotAnswered},
    KindRow{Failure::Kind::NotAnswered, "not-answered", ExitCode::NotAnswered},
    KindRow{Failure::Kind::Refused, "refused", ExitCode::NotAnswered},
    KindRow{Failure::Kind::Different, "different", ExitCode::NotAnswered},
    KindRow{Failure::Kind::Conflict, "conflict", ExitCode::NotAnswered},
    KindRow{Failure::Kind::File, "file", ExitCode::SomeFailed},
    KindRow{Failure::Kind::Service, "service", ExitCode::NotAnswered},
    KindRow{Failure::Kind::Stopped, "stopped", ExitCode::SomeFailed},
    KindRow{Failure::Kind::Usage, "usage", ExitCode::Usage},
};

constexpr bool isOrderedByKind()
{
    for (std::size_t i = 0; i < kKinds.size(); ++i) {
        if (static_cast<std::size_t>(kKinds[i].kind) != i)
            return false;
    }
    return true;
}
static_assert(isOrderedByKind(), "rowOf() takes the kind as the index");

const KindRow& rowOf(Failure::Kind kind)
{
    return kKinds[static_cast<std::size_t>(kind)];
}

} // namespace

QString Failure::code() const
{
    return QString::fromLatin1(rowOf(kind).code);
}

ExitCode Failure::exitCode() const
{
    return rowOf(kind).exitCode;
}

QJsonObject Failure::toJson() const
{
    QJsonObject object{{QStringLiteral("code"), code()}, {QStringLiteral("message"), message}};
    if (!hint.isEmpty())
        object.insert(QStringLiteral("hint"), hint);
    return object;
}
