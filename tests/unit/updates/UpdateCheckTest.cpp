#include "UpdateCheck.h"
#include "LogCapture.h"
#include "QtPrinters.h"
#include "TestVendor.h"

#include <gtest/gtest.h>

TEST(UpdateCheck, IsAvailableOnlyWithAValidAddress)
{
    const auto configured = [](const char* url) {
        TestVendor::setUpdateBaseUrl(QString::fromUtf8(url));
        return UpdateCheck::isConfigured();
    };
    EXPECT_TRUE(configured("https://localhost:4443"));
    EXPECT_TRUE(configured("https://update.example"));
    EXPECT_TRUE(configured("https://invalid.example"));
    EXPECT_FALSE(configured(""));
    EXPECT_FALSE(configured("https://update.sorvanta.invalid"));
    EXPECT_FALSE(configured("https://UPDATE.Sorvanta.INVALID:443"));
    EXPECT_FALSE(configured("https://invalid"));
    EXPECT_FALSE(configured("nonsense"));
}

TEST(UpdateCheck, CheckIsPostedToItsPath)
{
    TestVendor::setUpdateBaseUrl(QStringLiteral("https://localhost:4443"));
    EXPECT_EQ(UpdateCheck::url(),
              "https://localhost:4443/api/voip/v1/ec/upgrade/needVersionUpgrade");
}

TEST(UpdateCheck, BodyIsTheTextTheServiceExpects)
{
    EXPECT_EQ(UpdateCheck::body(QStringLiteral("RQ-T47K"), QStringLiteral("1.0.5")),
              "{\"terminalType\":\"RQ-T47K\",\n\"version\":\"1.0.5\",\n}");
    EXPECT_EQ(UpdateCheck::body(QStringLiteral("RQ-T47K"), QString()),
              "{\"terminalType\":\"RQ-T47K\",\n\"version\":\"\",\n}");
    EXPECT_EQ(UpdateCheck::applicationBody(QStringLiteral("1.2.3")),
              "{\"terminalType\":\"SCW\",\n\"version\":\"1.2.3\",\n}");
}

TEST(UpdateCheck, BodyContainsTextsUnchanged)
{
    EXPECT_EQ(UpdateCheck::body(QStringLiteral("A\"B"), QStringLiteral("1\"\\2")),
              "{\"terminalType\":\"A\"B\",\n\"version\":\"1\"\\2\",\n}");
    EXPECT_EQ(UpdateCheck::applicationBody(QString::fromUtf8("版\"本")),
              "{\"terminalType\":\"SCW\",\n\"version\":\"版\"本\",\n}");
}

TEST(UpdateCheck, OnlyAPlainFalseIsNoOffer)
{
    const auto offers = [](const char* answer) {
        return UpdateCheck::offersUpdate(
            UpdateCheck::getJsonObjectFromString(QString::fromUtf8(answer)));
    };
    EXPECT_FALSE(offers(R"({"needUpgrade":false})"));
    EXPECT_TRUE(offers(R"({"needUpgrade":true})"));
    EXPECT_TRUE(offers(R"({"needUpgrade":0})"));
    EXPECT_TRUE(offers(R"({"needUpgrade":"false"})"));
    EXPECT_TRUE(offers(R"({"needUpgrade":null})"));
    EXPECT_TRUE(offers(R"({"details":"x"})"));
    EXPECT_TRUE(offers("not JSON"));
    EXPECT_TRUE(offers(""));
    EXPECT_TRUE(offers("[false]"));
}

TEST(UpdateCheck, AnswerThatIsNoJsonIsLoggedAndEmpty)
{
    const LogCapture log;
    EXPECT_TRUE(UpdateCheck::getJsonObjectFromString(QStringLiteral("<html>")).isEmpty());
    ASSERT_FALSE(log.texts().isEmpty());
    EXPECT_EQ(log.texts().constFirst(), QStringLiteral("===> please check the string  \"<html>\""));
}

TEST(UpdateCheck, AnswerIsLoggedWithItsDetails)
{
    const LogCapture log;
    const QJsonObject object =
        UpdateCheck::getJsonObjectFromString(QStringLiteral(R"({"details":"Better"})"));
    EXPECT_EQ(object.value(QStringLiteral("details")).toString(), QStringLiteral("Better"));
    ASSERT_EQ(log.texts().size(), 2);
    EXPECT_EQ(log.texts().constLast(), QStringLiteral("\"Better\""));
}
