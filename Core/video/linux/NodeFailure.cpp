#include "NodeFailure.h"

#include "NodeUsers.h"

#include <cerrno>

PreviewFailure nodeFailure(const QString& node, int error)
{
    using Cause = PreviewFailure::Cause;
    switch (error) {
    case 0:
        return {};
    case EBUSY:
        return {Cause::InUse, programsThatUse(node).join(QStringLiteral(", "))};
    case EACCES:
    case EPERM:
        return {Cause::NoPermission, {}};
    case ENODEV:
    case ENOENT:
    case ENXIO:
        return {Cause::Gone, {}};
    default:
        return {Cause::Other, {}};
    }
}
