#include "Outcome.h"

#include <gtest/gtest.h>
#include <utility>

void Outcome::listenTo(Brivane::STHTTPRequest& request)
{
    request.onResponse = [shared = m_shared](std::string body) {
        add(*shared, {Kind::Response, 0, std::move(body)});
    };
    request.onError = [shared = m_shared](std::int32_t code, std::string message) {
        add(*shared, {Kind::Error, code, std::move(message)});
    };
}

void Outcome::listenToDownload(Brivane::STHTTPDownloadRequest& request, OnProgress then)
{
    listenTo(request);
    request.onProgress = [shared = m_shared, then = std::move(then)](std::int32_t percent) {
        {
            const std::lock_guard<std::mutex> lock(shared->mutex);
            shared->told.progress.push_back(percent);
            shared->told.threads.insert(std::this_thread::get_id());
            shared->told.afterTheEnd += shared->told.ends.empty() ? 0 : 1;
        }
        if (then)
            then(percent);
    };
    request.onData = [shared = m_shared](std::string data) {
        const std::lock_guard<std::mutex> lock(shared->mutex);
        shared->told.data += data;
        ++shared->told.pieces;
        shared->told.threads.insert(std::this_thread::get_id());
        shared->told.afterTheEnd += shared->told.ends.empty() ? 0 : 1;
    };
}

bool Outcome::ended() const
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    return !m_shared->told.ends.empty();
}

Outcome::Told Outcome::told() const
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    return m_shared->told;
}

Outcome::End Outcome::end() const
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    EXPECT_EQ(m_shared->told.ends.size(), 1U);
    EXPECT_EQ(m_shared->told.afterTheEnd, 0);
    return m_shared->told.ends.empty() ? End{Kind::Error, -1, "no end"}
                                       : m_shared->told.ends.front();
}

void Outcome::add(Shared& shared, const End& end)
{
    const std::lock_guard<std::mutex> lock(shared.mutex);
    shared.told.ends.push_back(end);
    shared.told.threads.insert(std::this_thread::get_id());
}
