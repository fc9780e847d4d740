#include "CBaseRequest.h"
#include "CPingRequest.h"
#include "HttpError.h"
#include "LogLines.h"
#include "ServiceTest.h"
#include "setLogObserver.h"

#include <atomic>
#include <QElapsedTimer>
#include <thread>

using namespace Brivane;
using updateservice::UpdateService;

namespace {

class HttpRequestTest : public ServiceTest
{
};

class HttpRequestFaultTest : public ServiceTest, public ::testing::WithParamInterface<Fault>
{
};

} // namespace

TEST_F(HttpRequestTest, PostsTheBodyAsJson)
{
    const auto request = check();
    const Outcome outcome = run(request);

    EXPECT_EQ(outcome.code(), 0);
    ASSERT_EQ(m_service->requests().size(), 1);
    const auto& seen = m_service->requests().first();
    EXPECT_EQ(seen.method, "POST");
    EXPECT_EQ(seen.path, UpdateService::kCheckPath);
    EXPECT_EQ(seen.body.toStdString(), request->body);
    EXPECT_EQ(seen.headers.value("content-type"), "application/json");
    EXPECT_EQ(seen.headers.value("accept-encoding"), "identity");
}

TEST_F(HttpRequestTest, ReportsTheAnswer)
{
    updateservice::UpdateOffer offer;
    offer.text = "{\"details\":\"\xe6\x96\xb0\"}";
    m_service->setOffer(offer);

    const Outcome outcome = run(check());

    EXPECT_EQ(outcome.end().kind, Outcome::Kind::Response);
    EXPECT_EQ(outcome.end().text, offer.text.toStdString());
}

TEST_F(HttpRequestTest, AcceptsAChunkedAnswer)
{
    m_service->fault("framing chunked");
    m_service->fault("uptodate");
    EXPECT_EQ(run(check()).end().text, "{\"needUpgrade\":false}");
}

TEST_F(HttpRequestTest, AcceptsAnAnswerOfTheGreatestLength)
{
    m_service->fault(QStringLiteral("huge %1").arg(CHttpClient::kMaxAnswerBytes));
    EXPECT_EQ(run(check()).end().text.size(),
              static_cast<std::size_t>(CHttpClient::kMaxAnswerBytes));
}

TEST_F(HttpRequestTest, CallsBackOnAThreadOfItsOwn)
{
    const Outcome first = run(check());
    const Outcome second = run(check());
    ASSERT_EQ(first.told().threads.size(), 1U);
    EXPECT_EQ(first.told().threads.count(std::this_thread::get_id()), 0U);
    EXPECT_EQ(first.told().threads, second.told().threads);
}

TEST_F(HttpRequestTest, ReturnsAtOnce)
{
    const auto request = check();
    const Outcome outcome = begin(request);
    // The service has not run since.
    EXPECT_FALSE(outcome.ended());
    EXPECT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    EXPECT_EQ(outcome.code(), 0);
}

TEST_F(HttpRequestTest, KeepsTheRecordUntilItHasCalledBack)
{
    auto request = check();
    const std::weak_ptr<STHTTPRequest> record = request;
    const Outcome outcome = begin(request);
    request.reset();
    EXPECT_FALSE(record.expired());
    EXPECT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    EXPECT_TRUE(serveUntil([&record] { return record.expired(); }));
}

TEST_F(HttpRequestTest, ChangesOfTheRecordAfterSendingHaveNoEffect)
{
    const auto request = check();
    const Outcome outcome = begin(request);
    request->url = "nowhere";
    request->body.clear();
    request->onResponse = nullptr;
    EXPECT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    EXPECT_EQ(outcome.code(), 0);
    EXPECT_FALSE(m_service->requests().first().body.isEmpty());
}

TEST_F(HttpRequestTest, SendsExtraHeadersInOrder)
{
    const auto request = check();
    request->headers = {{{"X-First", "one"}, {"X-Second", "two"}},
                        {{"X-First", "three"}},
                        {{"Content-Type", "text/plain"}}};
    EXPECT_EQ(run(request).code(), 0);
    const auto headers = m_service->requests().first().headers;
    EXPECT_EQ(headers.value("x-first"), "three");
    EXPECT_EQ(headers.value("x-second"), "two");
    EXPECT_EQ(headers.value("content-type"), "text/plain");
}

TEST_F(HttpRequestTest, RefusesInvalidAddresses)
{
    const std::vector<std::pair<std::string, std::int32_t>> addresses{
        {"", HttpError::InvalidUrl},
        {"nowhere", HttpError::InvalidUrl},
        {"//localhost/path", HttpError::InvalidUrl},
        {"https://", HttpError::InvalidUrl},
        {"https:///path", HttpError::InvalidUrl},
        {"https://local host:x/", HttpError::InvalidUrl},
        {std::string("https://\0", 9), HttpError::InvalidUrl},
        {"http://localhost/path", HttpError::UnsupportedScheme},
        {"ftp://localhost/path", HttpError::UnsupportedScheme},
        {"file:///etc/hostname", HttpError::UnsupportedScheme},
        {"data:text/plain,hello", HttpError::UnsupportedScheme}};
    for (const auto& [address, code] : addresses) {
        const auto request = check();
        request->url = address;
        const Outcome outcome = run(request);
        EXPECT_EQ(outcome.code(), code) << address;
        EXPECT_FALSE(outcome.end().text.empty());
        EXPECT_EQ(outcome.told().threads.count(std::this_thread::get_id()), 0U);
    }
}

TEST_F(HttpRequestTest, AnUnknownHostIsAnError)
{
    const auto request = check();
    request->url = "https://no-such-host.invalid/";
    EXPECT_EQ(run(request).code(), HttpError::HostNotFound);
}

TEST_F(HttpRequestTest, WorksWithoutCallbacks)
{
    const auto silent = std::make_shared<STHTTPRequest>();
    send(silent);
    const auto answered = check();
    send(answered);
    EXPECT_TRUE(serveUntil([this] { return m_service->requests().size() == 1; }));
    EXPECT_EQ(run(check()).code(), 0);
}

TEST_F(HttpRequestTest, ANullRecordDoesNothing)
{
    std::shared_ptr<STHTTPRequest> none;
    m_client->request(none);
    EXPECT_EQ(run(check()).code(), 0);
}

TEST_F(HttpRequestTest, AConnectionThatIsRefusedIsAnError)
{
    m_service->stop();
    EXPECT_EQ(run(check()).code(), HttpError::ConnectionRefused);
    ASSERT_TRUE(m_service->start());
    EXPECT_EQ(run(check()).code(), 0);
}

TEST_F(HttpRequestTest, ReportsStatusesUnchanged)
{
    for (const int status : {304, 400, 401, 403, 404, 407, 418, 500, 503}) {
        m_service->fault(QStringLiteral("status %1").arg(status));
        const Outcome outcome = run(check());
        EXPECT_EQ(outcome.end().kind, Outcome::Kind::Error);
        EXPECT_EQ(outcome.code(), status);
    }
}

TEST_F(HttpRequestTest, AcceptsAllStatusesOfSuccess)
{
    m_service->fault("status 202");
    EXPECT_EQ(run(check()).end().text, "no answer");
}

TEST_P(HttpRequestFaultTest, EndsWithItsCode)
{
    const auto request = check();
    apply(GetParam(), *request);
    const Outcome outcome = run(request);
    EXPECT_EQ(outcome.end().kind, Outcome::Kind::Error);
    EXPECT_EQ(outcome.code(), GetParam().code) << outcome.end().text;
    EXPECT_FALSE(outcome.end().text.empty());
}

INSTANTIATE_TEST_SUITE_P(
    All, HttpRequestFaultTest,
    ::testing::Values(Fault{"huge", HttpError::AnswerTooLarge},
                      Fault{"huge 1048577", HttpError::AnswerTooLarge},
                      Fault{"huge, framing chunked", HttpError::AnswerTooLarge},
                      Fault{"bomb", HttpError::UnsupportedEncoding},
                      Fault{"truncate 10", HttpError::ConnectionLost},
                      Fault{"truncate 0", HttpError::ConnectionLost},
                      Fault{"framing chunked, truncate 10", HttpError::ConnectionLost},
                      Fault{"framing chunked, truncate 10 pieces", HttpError::ConnectionLost},
                      Fault{"framing close", HttpError::UnknownLength},
                      Fault{"framing close, truncate 10", HttpError::UnknownLength},
                      Fault{"redirect loop", HttpError::TooManyRedirects},
                      Fault{"redirect http", HttpError::RedirectRefused},
                      Fault{"redirect file", HttpError::RedirectRefused},
                      Fault{"stall handshake", HttpError::ConnectTimeout},
                      Fault{"stall head", HttpError::InactivityTimeout},
                      Fault{"stall body 5", HttpError::InactivityTimeout}));

TEST_F(HttpRequestTest, StopsAHugeAnswerEarly)
{
    // The rest never arrives: a client that waits for it ends with a time-out instead.
    m_service->fault("huge");
    m_service->fault("stall body 2000000");
    EXPECT_EQ(run(check()).code(), HttpError::AnswerTooLarge);
    m_service->fault("framing chunked");
    EXPECT_EQ(run(check()).code(), HttpError::AnswerTooLarge);
}

TEST_F(HttpRequestTest, AnAnswerThatIsTooSlowEndsInTime)
{
    // At 20 bytes a second there is never a long pause, but 1000 bytes would take 50 s.
    m_service->fault("huge 1000");
    m_service->fault("slow 20");
    const auto request = check();
    request->inactivityTimeoutMs = 250;
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(run(request).code(), HttpError::InactivityTimeout);
    EXPECT_GE(timer.elapsed(), 4 * request->inactivityTimeoutMs);
}

TEST_F(HttpRequestTest, WaitsForASlowAnswerThatComesInTime)
{
    m_service->fault("huge 100");
    m_service->fault("slow 200");
    const auto request = check();
    request->inactivityTimeoutMs = 2000;
    EXPECT_EQ(run(request).end().text.size(), 100U);
}

TEST_F(HttpRequestTest, FollowsARedirect)
{
    m_service->fault("redirect once");
    EXPECT_EQ(run(check()).code(), 0);
    ASSERT_EQ(m_service->requests().size(), 2);
    EXPECT_EQ(m_service->requests().last().method, "POST");
    EXPECT_EQ(m_service->requests().last().body.toStdString(), check()->body);
}

TEST_F(HttpRequestTest, FollowsAsManyRedirectsAsTheSettingSays)
{
    m_service->fault("redirect loop");
    const auto request = check();
    const Outcome outcome = run(request);
    EXPECT_EQ(outcome.code(), HttpError::TooManyRedirects) << outcome.end().text;
    EXPECT_EQ(m_service->requests().size(), 1 + request->redirectLimit);

    m_service->clearRequests();
    const auto none = check();
    none->redirectLimit = 0;
    EXPECT_EQ(run(none).code(), HttpError::TooManyRedirects);
    EXPECT_EQ(m_service->requests().size(), 1);
}

TEST_F(HttpRequestTest, AHundredAtOnceAllEnd)
{
    constexpr std::size_t count = 100;
    std::vector<Outcome> outcomes(count);
    for (Outcome& outcome : outcomes) {
        const auto request = check();
        outcome.listenTo(*request);
        send(request);
    }
    for (const Outcome& outcome : outcomes) {
        ASSERT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
        EXPECT_EQ(outcome.code(), 0);
    }
    EXPECT_EQ(m_service->requests().size(), static_cast<int>(count));
}

TEST_F(HttpRequestTest, SendsTheNextFromInsideACallback)
{
    Outcome outcome;
    const auto next = check();
    outcome.listenTo(*next);
    const auto first = check();
    first->onResponse = [this, next](const std::string&) { send(next); };
    send(first);
    EXPECT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    EXPECT_EQ(outcome.code(), 0);
}

TEST_F(HttpRequestTest, LogsWithoutSecrets)
{
    const LogLines lines;
    const auto request = check();
    request->url = "https://user:word@" + request->url.substr(8) + "?token=hush#part";
    request->headers = {{{"Authorization", "hush"}}};
    request->body = "hush";
    EXPECT_EQ(run(request).code(), 0);
    EXPECT_TRUE(lines.contains(UpdateService::kCheckPath));
    EXPECT_FALSE(lines.contains("hush"));
    EXPECT_FALSE(lines.contains("word"));
    EXPECT_FALSE(lines.containsLevel(ILogObserver::Warning));

    m_service->stop();
    EXPECT_EQ(run(check()).code(), HttpError::ConnectionRefused);
    EXPECT_TRUE(lines.containsLevel(ILogObserver::Warning));
}

TEST_F(HttpRequestTest, LogsNothingBelowTheLevel)
{
    LogLines lines;
    EXPECT_EQ(lines.getLogLevel(), ILogObserver::Debug);
    lines.setLogLevel(ILogObserver::Warning);
    EXPECT_EQ(lines.getLogLevel(), ILogObserver::Warning);
    EXPECT_EQ(run(check()).code(), 0);
    EXPECT_EQ(lines.count(), 0U);
}

TEST_F(HttpRequestTest, NoLineComesAfterTheObserverWasRemoved)
{
    // The observer is removed at different moments and destroyed right after.
    for (int round = 0; round < 50; ++round) {
        const auto request = std::make_shared<STHTTPRequest>();
        Outcome outcome;
        outcome.listenTo(*request);
        auto lines = std::make_unique<LogLines>();
        send(request);
        if (round % 2 == 0)
            std::this_thread::yield();
        lines.reset();
        EXPECT_TRUE(serveUntil([&outcome] { return outcome.ended(); }));
    }
}

TEST_F(HttpRequestTest, AnObserverMayRemoveItself)
{
    class Once : public ILogObserver
    {
    public:
        void onPrintLog(std::int32_t, std::string) override
        {
            ++count;
            setLogObserver(nullptr);
        }
        std::atomic<int> count{0};
    };
    Once once;
    setLogObserver(&once);
    EXPECT_EQ(run(check()).code(), 0);
    setLogObserver(nullptr);
    EXPECT_EQ(once.count, 1);
}

TEST(MessageTest, ABaseRequestDropsItsName)
{
    CBaseRequest message(77, "name");
    EXPECT_EQ(message.getMsgId(), 77);
    EXPECT_EQ(message.toString(), "");
    CPingRequest ping(78);
    CBaseRequest& base = ping;
    EXPECT_EQ(base.getMsgId(), 78);
    EXPECT_EQ(base.toString(), "");
    static_assert(std::is_polymorphic_v<CBaseRequest>);
    static_assert(!std::has_virtual_destructor_v<CBaseRequest>);
    static_assert(!std::has_virtual_destructor_v<CPingRequest>);
}

TEST(RecordTest, IsEmptyAtFirst)
{
    const STHTTPDownloadRequest request;
    EXPECT_TRUE(request.url.empty());
    EXPECT_TRUE(request.headers.empty());
    EXPECT_TRUE(request.body.empty());
    EXPECT_FALSE(request.onResponse);
    EXPECT_FALSE(request.onError);
    EXPECT_EQ(request.connectTimeoutMs, 15000);
    EXPECT_EQ(request.inactivityTimeoutMs, 30000);
    EXPECT_EQ(request.redirectLimit, 5);
    EXPECT_TRUE(request.savePath.empty());
    EXPECT_FALSE(request.onData);
    EXPECT_FALSE(request.onProgress);
}

TEST(RecordTest, ACopyHasEveryField)
{
    int calls = 0;
    STHTTPDownloadRequest request;
    request.url = "url";
    request.headers = {{{"a", "b"}}, {{"c", "d"}}};
    request.body = "body";
    request.onResponse = [&calls](const std::string&) { calls += 1; };
    request.onError = [&calls](std::int32_t, const std::string&) { calls += 10; };
    request.connectTimeoutMs = 1;
    request.inactivityTimeoutMs = 2;
    request.redirectLimit = 3;
    request.savePath = "path";
    request.onData = [&calls](const std::string&) { calls += 100; };
    request.onProgress = [&calls](std::int32_t) { calls += 1000; };

    STHTTPDownloadRequest assigned;
    assigned = request;
    for (const STHTTPDownloadRequest& copy : {STHTTPDownloadRequest(request), assigned}) {
        calls = 0;
        EXPECT_EQ(copy.url, "url");
        EXPECT_EQ(copy.headers, request.headers);
        EXPECT_EQ(copy.body, "body");
        copy.onResponse({});
        copy.onError(0, {});
        EXPECT_EQ(copy.connectTimeoutMs, 1);
        EXPECT_EQ(copy.inactivityTimeoutMs, 2);
        EXPECT_EQ(copy.redirectLimit, 3);
        EXPECT_EQ(copy.savePath, "path");
        copy.onData({});
        copy.onProgress(0);
        EXPECT_EQ(calls, 1111);
    }
}
