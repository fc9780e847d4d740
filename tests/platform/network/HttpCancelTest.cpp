#include "HttpError.h"
#include "ServiceTest.h"

#include <atomic>
#include <QFile>
#include <thread>

using namespace Brivane;

namespace {

class HttpCancelTest : public ServiceTest
{
protected:
    /// Waits for the end of a request that was cancelled.
    static void expectCancelled(const Outcome& outcome)
    {
        ASSERT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
        serveForAWhile();
        EXPECT_EQ(outcome.end().kind, Outcome::Kind::Error);
        EXPECT_EQ(outcome.code(), 4016);
        EXPECT_EQ(outcome.end().text, "The request was cancelled.");
    }

    /// Sends requests that the service never answers.
    std::vector<Outcome> sendStalled(std::size_t count)
    {
        m_service->fault("stall head");
        std::vector<Outcome> outcomes(count);
        for (Outcome& outcome : outcomes) {
            const auto request = check();
            outcome.listenTo(*request);
            send(request);
        }
        return outcomes;
    }
};

class HttpCancelStageTest : public HttpCancelTest, public ::testing::WithParamInterface<const char*>
{
};

} // namespace

TEST_F(HttpCancelTest, BeforeItWasSent)
{
    const auto request = check();
    Outcome outcome;
    outcome.listenTo(*request);
    request->cancel();
    serveForAWhile();
    EXPECT_FALSE(outcome.ended());
    send(request);
    expectCancelled(outcome);
    EXPECT_TRUE(m_service->requests().isEmpty());
    EXPECT_EQ(outcome.told().threads.count(std::this_thread::get_id()), 0U);
}

TEST_F(HttpCancelTest, RightAfterItWasSent)
{
    const auto request = check();
    const Outcome outcome = begin(request);
    request->cancel();
    expectCancelled(outcome);
}

TEST_F(HttpCancelTest, Twice)
{
    const auto request = check();
    m_service->fault("stall head");
    const Outcome outcome = begin(request);
    request->cancel();
    request->cancel();
    expectCancelled(outcome);
    request->cancel();
    serveForAWhile();
    EXPECT_EQ(outcome.code(), 4016);
}

TEST_F(HttpCancelTest, FromACopy)
{
    const auto request = check();
    m_service->fault("stall head");
    Outcome outcome;
    outcome.listenTo(*request);
    STHTTPRequest copy(*request);
    send(request);
    ASSERT_TRUE(serveUntil([this] { return m_service->requests().size() == 1; }));
    copy.cancel();
    expectCancelled(outcome);
}

TEST_F(HttpCancelTest, FromAnAssignedRecordOnly)
{
    const auto request = check();
    m_service->fault("stall head");
    Outcome outcome;
    outcome.listenTo(*request);
    STHTTPRequest other;
    other.cancel();
    other = *request;
    send(request);
    ASSERT_TRUE(serveUntil([this] { return m_service->requests().size() == 1; }));
    serveForAWhile();
    EXPECT_FALSE(outcome.ended());
    other.cancel();
    expectCancelled(outcome);
}

TEST_F(HttpCancelTest, OneEndsAllThatWereSentFromCopies)
{
    const auto first = check();
    const auto second = std::make_shared<STHTTPRequest>(*first);
    m_service->fault("stall head");
    Outcome firstOutcome;
    Outcome secondOutcome;
    firstOutcome.listenTo(*first);
    secondOutcome.listenTo(*second);
    send(first);
    send(second);
    first->cancel();
    expectCancelled(firstOutcome);
    expectCancelled(secondOutcome);
}

TEST_P(HttpCancelStageTest, EndsARequestThatHangs)
{
    ASSERT_TRUE(m_service->fault(GetParam()));
    const auto request = check();
    const Outcome outcome = begin(request);
    serveForAWhile();
    EXPECT_FALSE(outcome.ended());
    request->cancel();
    expectCancelled(outcome);
}

INSTANTIATE_TEST_SUITE_P(All, HttpCancelStageTest,
                         ::testing::Values("stall handshake", "stall head", "stall body 5"));

TEST_F(HttpCancelTest, FromInsideProgress)
{
    const QString url = m_service->addPackage("firmware.bin", QByteArray(3'000'000, 'x'));
    for (const std::int32_t at : {0, 30, 99, 100}) {
        const auto request = download(url);
        Outcome outcome;
        outcome.listenToDownload(*request, [&request, at](std::int32_t percent) {
            if (percent >= at)
                request->cancel();
        });
        send(request);
        expectCancelled(outcome);
        // No progress is reported after the callback that cancels.
        EXPECT_GE(outcome.told().progress.back(), at);
        EXPECT_TRUE(outcome.told().progress.size() == 1 ||
                    outcome.told().progress.at(outcome.told().progress.size() - 2) < at);
        EXPECT_EQ(filesLeft(), QStringList()) << at;
    }
}

TEST_F(HttpCancelTest, AfterTheEndDoesNothing)
{
    const auto request = check();
    const Outcome outcome = run(request);
    request->cancel();
    serveForAWhile();
    EXPECT_EQ(outcome.code(), 0);
    // It may be sent again.
    const auto again = std::make_shared<STHTTPRequest>(*request);
    EXPECT_EQ(run(again).code(), 0);
}

TEST_F(HttpCancelTest, FromInsideTheEndDoesNothing)
{
    const auto request = check();
    std::atomic<int> responses{0};
    std::atomic<int> errors{0};
    request->onResponse = [&](const std::string&) {
        ++responses;
        request->cancel();
    };
    request->onError = [&](std::int32_t, const std::string&) { ++errors; };
    send(request);
    ASSERT_TRUE(serveUntil([&] { return responses + errors > 0; }));
    serveForAWhile();
    EXPECT_EQ(responses, 1);
    EXPECT_EQ(errors, 0);
}

TEST_F(HttpCancelTest, AtAnyMomentThereIsOneEnd)
{
    int cancelled = 0;
    int complete = 0;
    for (int round = 0; round < 60; ++round) {
        const auto request = check();
        const Outcome outcome = begin(request);
        std::thread canceller([request, round] {
            std::this_thread::sleep_for(std::chrono::microseconds(round * 500));
            request->cancel();
        });
        ASSERT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
        canceller.join();
        const std::int32_t code = outcome.code();
        EXPECT_TRUE(code == 0 || code == HttpError::Cancelled) << code;
        ++(code == 0 ? complete : cancelled);
    }
    EXPECT_GT(cancelled, 0);
    RecordProperty("complete", complete);
}

TEST_F(HttpCancelTest, DestroyingTheClientEndsAllRequestsBeforeItReturns)
{
    // Some of them have not started when the client goes.
    const std::vector<Outcome> outcomes = sendStalled(20);
    ASSERT_TRUE(serveUntil([this] { return !m_service->requests().isEmpty(); }));
    m_client.reset();
    for (const Outcome& outcome : outcomes)
        EXPECT_EQ(outcome.code(), HttpError::Cancelled);
    serveForAWhile();
    for (const Outcome& outcome : outcomes)
        EXPECT_EQ(outcome.code(), HttpError::Cancelled);
}

TEST_F(HttpCancelTest, DestroyingTheClientRightAfterSending)
{
    for (int round = 0; round < 20; ++round) {
        CHttpClient client;
        std::shared_ptr<STHTTPRequest> request = check();
        Outcome outcome;
        outcome.listenTo(*request);
        {
            CHttpClient shortLived;
            shortLived.request(request);
        }
        EXPECT_EQ(outcome.code(), HttpError::Cancelled);
    }
}

TEST_F(HttpCancelTest, DestroyingTheClientRemovesAPartialFile)
{
    m_service->fault("stall body 1000000");
    const auto request =
        download(m_service->addPackage("firmware.bin", QByteArray(3'000'000, 'x')));
    const Outcome outcome = begin(request);
    ASSERT_TRUE(serveUntil([&outcome] { return !outcome.told().data.empty(); }));
    m_client.reset();
    EXPECT_EQ(outcome.code(), HttpError::Cancelled);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(HttpCancelTest, AnUnusedClientCanBeDestroyed)
{
    m_client.reset();
    const CHttpClient unused;
}

TEST_F(HttpCancelTest, DestroyingTheClientFromItsResponse)
{
    const auto request = check();
    std::atomic<bool> destroyed{false};
    const std::vector<Outcome> others = [this] {
        std::vector<Outcome> stalled = sendStalled(3);
        serveUntil([this] { return m_service->requests().size() == 3; });
        m_service->setBehaviour({});
        return stalled;
    }();
    std::vector<std::int32_t> codes;
    request->onResponse = [&](const std::string&) {
        m_client.reset();
        for (const Outcome& other : others)
            codes.push_back(other.code());
        destroyed = true;
    };
    send(request);
    ASSERT_TRUE(serveUntil([&destroyed] { return destroyed.load(); }));
    EXPECT_EQ(codes, std::vector<std::int32_t>(3, HttpError::Cancelled));
}

TEST_F(HttpCancelTest, DestroyingTheClientFromItsError)
{
    const auto request = std::make_shared<STHTTPRequest>();
    std::atomic<int> errors{0};
    request->onError = [&](std::int32_t, const std::string&) {
        m_client.reset();
        ++errors;
    };
    send(request);
    ASSERT_TRUE(serveUntil([&errors] { return errors > 0; }));
    serveForAWhile();
    EXPECT_EQ(errors, 1);
}

TEST_F(HttpCancelTest, DestroyingTheClientFromProgressEndsTheDownload)
{
    const auto request =
        download(m_service->addPackage("firmware.bin", QByteArray(3'000'000, 'x')));
    Outcome outcome;
    std::atomic<bool> destroyed{false};
    outcome.listenToDownload(*request, [&](std::int32_t percent) {
        if (percent < 30 || destroyed)
            return;
        m_client.reset();
        EXPECT_EQ(outcome.code(), HttpError::Cancelled);
        destroyed = true;
    });
    send(request);
    ASSERT_TRUE(serveUntil([&destroyed] { return destroyed.load(); }));
    serveForAWhile();
    EXPECT_EQ(outcome.code(), HttpError::Cancelled);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(HttpCancelTest, ARequestSentWhileTheClientIsDestroyedEndsToo)
{
    const auto request = check();
    const auto next = check();
    m_service->fault("stall head");
    Outcome nextOutcome;
    nextOutcome.listenTo(*next);
    Brivane::CHttpClient* client = m_client.get();
    request->onError = [client, next](std::int32_t, const std::string&) {
        std::shared_ptr<STHTTPRequest> reference = next;
        client->request(reference);
    };
    send(request);
    ASSERT_TRUE(serveUntil([this] { return m_service->requests().size() == 1; }));
    m_client.reset();
    EXPECT_EQ(nextOutcome.code(), HttpError::Cancelled);
}
