#include "STHTTPDownloadRequest.h"

namespace Brivane {

STHTTPDownloadRequest::STHTTPDownloadRequest() = default;

STHTTPDownloadRequest::STHTTPDownloadRequest(const STHTTPDownloadRequest& other) = default;

STHTTPDownloadRequest&
STHTTPDownloadRequest::operator=(const STHTTPDownloadRequest& other) = default;

STHTTPDownloadRequest::~STHTTPDownloadRequest() = default;

} // namespace Brivane
