#pragma once

#include "STHTTPDownloadRequest.h"

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

/// Records the callbacks of one request.
class Outcome
{
public:
    enum class Kind { Response, Error };

    struct End
    {
        Kind kind = Kind::Response;
        std::int32_t code = 0;
        std::string text;
    };

    struct Told
    {
        std::vector<End> ends;
        std::vector<std::int32_t> progress;
        std::string data;
        std::size_t pieces = 0;
        int afterTheEnd = 0; ///< callbacks after the end
        std::set<std::thread::id> threads;
    };

    using OnProgress = std::function<void(std::int32_t)>;

    /// Sets the callbacks of a request.
    void listenTo(Brivane::STHTTPRequest& request);
    /// The same for a download; @p then is called from onProgress.
    void listenToDownload(Brivane::STHTTPDownloadRequest& request, OnProgress then = {});

    [[nodiscard]] bool ended() const;
    [[nodiscard]] Told told() const;
    /// The end; fails the test unless there is exactly one and no callback came after it.
    [[nodiscard]] End end() const;
    /// The code of the end; 0 for a response.
    [[nodiscard]] std::int32_t code() const { return end().code; }

private:
    // The callbacks may outlive this object.
    struct Shared
    {
        mutable std::mutex mutex;
        Told told;
    };

    static void add(Shared& shared, const End& end);

    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
};
