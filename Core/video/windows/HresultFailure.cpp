#include "HresultFailure.h"

#include <winerror.h>

PreviewFailure hresultFailure(HRESULT result)
{
    using Cause = PreviewFailure::Cause;
    if (SUCCEEDED(result))
        return {};
    if (result == REGDB_E_CLASSNOTREG)
        return {Cause::PartMissing, {}};
    if (HRESULT_FACILITY(result) != FACILITY_WIN32)
        return {Cause::Other, {}};
    switch (HRESULT_CODE(result)) {
    // The driver of a camera that streams already has no resources for a second stream; other
    // drivers report only that a device does not work.
    case ERROR_NO_SYSTEM_RESOURCES:
    case ERROR_GEN_FAILURE:
    case ERROR_SHARING_VIOLATION:
    case ERROR_BUSY:
    case ERROR_DEVICE_IN_USE:
        return {Cause::InUse, {}};
    case ERROR_ACCESS_DENIED:
        return {Cause::NoPermission, {}};
    case ERROR_FILE_NOT_FOUND:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_DEVICE_REMOVED:
        return {Cause::Gone, {}};
    default:
        return {Cause::Other, {}};
    }
}
