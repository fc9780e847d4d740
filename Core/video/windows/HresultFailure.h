#pragma once

#include "../PreviewFailure.h"

#include <unknwn.h>

/// Why a call of the capture framework failed.
[[nodiscard]] PreviewFailure hresultFailure(HRESULT result);
