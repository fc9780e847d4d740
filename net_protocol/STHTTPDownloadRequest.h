#pragma once

#include "STHTTPRequest.h"

namespace Brivane {

/// A request whose answer goes into a file. It is a GET; `body` is not sent.
///
/// The body is written to a temporary file beside `savePath` while it arrives and takes that name
/// when all of it is there and on the disk: a file called `savePath` is a whole one. When the
/// request ends through onError, the temporary file is gone and what had the name before is as it
/// was.
struct STHTTPDownloadRequest : STHTTPRequest
{
    STHTTPDownloadRequest();
    STHTTPDownloadRequest(const STHTTPDownloadRequest& other);
    STHTTPDownloadRequest& operator=(const STHTTPDownloadRequest& other);
    ~STHTTPDownloadRequest() override;

    /// The file, in a directory that exists. A regular file of that name is replaced; anything else
    /// of that name is an error.
    std::string savePath;
    /// Called on the library's thread with each piece of the body, in order, after it was written.
    std::function<void(std::string data)> onData;
    /// Called on the library's thread with the percentage that has arrived, 0 to 100, ascending and
    /// only when it changes. It stays out until the end when the service does not announce a
    /// length; 100 comes in any case, before onResponse.
    std::function<void(std::int32_t percent)> onProgress;
};

} // namespace Brivane
