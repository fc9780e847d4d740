#pragma once

#include "STHTTPDownloadRequest.h"

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

/// What the callbacks of one request were told.
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
        int afterTheEnd = 0; ///< calls that came when there was an end already
        std::set<std::thread::id> threads;
    };

    using OnProgress = std::function<void(std::int32_t)>;

    /// Sets the callbacks of a request.
    void listenTo(Brivane::STHTTPRequest& request);
    /// Those of a download too; @p then runs inside the callback.
    void listenToDownload(Brivane::STHTTPDownloadRequest& request, OnProgress then = {});

    [[nodiscard]] bool ended() const;
    [[nodiscard]] Told told() const;
    /// The only end; fails the test when there is not one.
    [[nodiscard]] End end() const;
    /// Code of the only end; 0 for a response.
    [[nodiscard]] std::int32_t code() const { return end().code; }

private:
    // The callbacks may outlive the test's own reference.
    struct Shared
    {
        mutable std::mutex mutex;
        Told told;
    };

    static void add(Shared& shared, const End& end);

    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
};
