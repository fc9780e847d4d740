#include "HresultFailure.h"

#include <vfwmsgs.h>
#include <winerror.h>

PreviewFailure hresultFailure(HRESULT result)
{
    using Cause = PreviewFailure::Cause;
    if (SUCCEEDED(result))
        return {};
    switch (result) {
    case REGDB_E_CLASSNOTREG:
    case CO_E_DLLNOTFOUND:
    case VFW_E_CANNOT_CONNECT:
    case VFW_E_CANNOT_RENDER:
    case VFW_E_NO_DECOMPRESSOR:
        return {Cause::PartMissing, {}};
    default:
        break;
    }
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
    // The class is registered, its library is not there.
    case ERROR_MOD_NOT_FOUND:
        return {Cause::PartMissing, {}};
    case ERROR_FILE_NOT_FOUND:
    case ERROR_DEVICE_NOT_CONNECTED:
    case ERROR_DEVICE_REMOVED:
        return {Cause::Gone, {}};
    default:
        return {Cause::Other, {}};
    }
}
