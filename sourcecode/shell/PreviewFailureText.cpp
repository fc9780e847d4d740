#include "PreviewFailureText.h"

QString PreviewFailureText::of(const PreviewFailure& failure)
{
    using Cause = PreviewFailure::Cause;
    switch (failure.cause) {
    case Cause::InUse:
        if (failure.detail.isEmpty())
            return tr("The camera is in use by another program. Stop the picture there, then start "
                      "it here.");
        return tr("The camera is in use by %1. Stop the picture there, then start it here.")
            .arg(failure.detail);
    case Cause::NoPermission:
        return noPermission();
    case Cause::PartMissing:
        return partMissing(failure.detail);
    case Cause::Gone:
        return tr("The camera was unplugged. Plug it in again.");
    case Cause::None:
    case Cause::Other:
        break;
    }
    return tr("The camera cannot be opened. Unplug it and plug it in again.");
}
