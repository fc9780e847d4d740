#pragma once

#include "STHTTPRequest.h"

namespace Brivane {

/// A request whose answer goes into a file. It is a GET; `body` is not sent.
///
/// While the body arrives, it is written to a temporary file beside `savePath`. The file gets that
/// name when the whole body is on the disk, so a file named `savePath` is always complete. When the
/// request ends through onError, the temporary file is removed and a file that had the name before
/// is unchanged.
struct STHTTPDownloadRequest : STHTTPRequest
{
    STHTTPDownloadRequest();
    STHTTPDownloadRequest(const STHTTPDownloadRequest& other);
    STHTTPDownloadRequest& operator=(const STHTTPDownloadRequest& other);
    ~STHTTPDownloadRequest() override;

    /// The file, in a directory that exists. A regular file of that name is replaced; a directory
    /// or a device of that name is an error.
    std::string savePath;
    /// Called on the library's thread with each piece of the body, in order, after it was written.
    /// The library's interface has it, although the program leaves it empty.
    std::function<void(std::string data)> onData;
    /// Called on the library's thread with the percentage that has arrived, 0 to 100, ascending and
    /// only when it changes. When the service does not announce a length, only 100 is reported. 100
    /// is always reported, before onResponse.
    std::function<void(std::int32_t percent)> onProgress;
};

} // namespace Brivane
