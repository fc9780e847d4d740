#include "UpdateOffer.h"
#include "Behaviour.h"

#include <gtest/gtest.h>
#include <QJsonDocument>
#include <QJsonObject>

using updateservice::Behaviour;
using updateservice::UpdateOffer;

namespace {

QByteArray checkOf(const char* version)
{
    return QByteArray("{\"terminalType\":\"RQ-T47K\",\n\"version\":\"") + version + "\",\n}";
}

} // namespace

TEST(UpdateOfferTest, OffersToAnotherVersion)
{
    UpdateOffer offer;
    offer.version = "1.0.6";
    offer.details = "better\n\xe6\x96\xb0";
    offer.url = "https://localhost/a";
    offer.packageSize = "1.5MB";
    const QJsonObject answer = QJsonDocument::fromJson(offer.answerTo(checkOf("1.0.5"))).object();
    EXPECT_EQ(answer.value("needUpgrade"), QJsonValue(true));
    EXPECT_EQ(answer.value("details").toString(), offer.details);
    EXPECT_EQ(answer.value("downLoadUrl").toString(), offer.url);
    EXPECT_EQ(answer.value("packageSize").toString(), offer.packageSize);
    EXPECT_EQ(offer.answerTo(checkOf("1.0.6")), UpdateOffer::upToDate());
    offer.text = "anything";
    EXPECT_EQ(offer.answerTo(checkOf("1.0.6")), "anything");
}

TEST(UpdateOfferTest, SizesHaveAUnitOfTwoLetters)
{
    EXPECT_EQ(UpdateOffer::sizeText(3 << 19), "1.5MB");
    EXPECT_EQ(UpdateOffer::sizeText(0), "0.0MB");
}

TEST(BehaviourTest, RefusesUnknownFaults)
{
    Behaviour behaviour;
    for (const char* line : {"", "status", "status x", "status 1000", "slow -1", "slow", "truncate",
                             "stall", "stall nowhere", "redirect", "tls 1.4", "certificate none",
                             "framing", "huge x", "uptodate 1", "nonsense"})
        EXPECT_FALSE(behaviour.apply(line)) << line;
    EXPECT_EQ(behaviour.status, 200);
    EXPECT_EQ(behaviour.bytesPerSecond, 0);
    EXPECT_EQ(behaviour.answer, Behaviour::Answer::Offer);
    EXPECT_EQ(behaviour.truncateAt, -1);
    EXPECT_EQ(behaviour.stall, Behaviour::Stall::None);
}

TEST(BehaviourTest, FaultsAccumulate)
{
    Behaviour behaviour;
    EXPECT_TRUE(behaviour.apply("slow 1000"));
    EXPECT_TRUE(behaviour.apply("truncate 10 pieces"));
    EXPECT_TRUE(behaviour.apply("framing chunked"));
    EXPECT_EQ(behaviour.bytesPerSecond, 1000);
    EXPECT_EQ(behaviour.truncateAt, 10);
    EXPECT_TRUE(behaviour.endAtPieces);
    EXPECT_EQ(behaviour.framing, Behaviour::Framing::Chunked);
}
