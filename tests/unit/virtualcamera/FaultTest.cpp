#include "core/Fault.h"

#include <gtest/gtest.h>

namespace virtualcamera {

namespace {

FaultRule parse(std::vector<std::string> words)
{
    return FaultRule::parse(words);
}

std::size_t applies(FaultPlan& plan, std::uint16_t command, std::uint32_t packet = 0)
{
    return plan.countRequest(command, packet).size();
}

} // namespace

TEST(Fault, EveryNameIsUnderstood)
{
    for (const FaultInfo& info : faultInfos()) {
        std::vector<std::string> words{std::string(info.name)};
        for (std::size_t i = 0; i < info.arguments.size(); ++i)
            words.emplace_back("3");
        const FaultRule rule = FaultRule::parse(words);
        EXPECT_EQ(info.kind, rule.kind) << info.name;
        EXPECT_EQ(0U, rule.describe().find(info.name)) << rule.describe();
    }
}

TEST(Fault, RefusesNonsense)
{
    EXPECT_THROW(parse({}), std::invalid_argument);
    EXPECT_THROW(parse({"tired"}), std::invalid_argument);
    EXPECT_THROW(parse({"late"}), std::invalid_argument);
    EXPECT_THROW(parse({"late", "soon"}), std::invalid_argument);
    EXPECT_THROW(parse({"late", "-5"}), std::invalid_argument);
    EXPECT_THROW(parse({"noreply", "5"}), std::invalid_argument);
    EXPECT_THROW(parse({"noreply", "when=5"}), std::invalid_argument);
    EXPECT_THROW(parse({"noreply", "cmd=0x10000"}), std::invalid_argument);
}

TEST(Fault, AppliesFromANumberAndALimitedNumberOfTimes)
{
    FaultPlan plan;
    plan.add(parse({"noreply", "from=2", "times=2"}));
    EXPECT_EQ(0U, applies(plan, 0x5000));
    EXPECT_EQ(1U, applies(plan, 0x5000));
    EXPECT_EQ(1U, applies(plan, 0x5000));
    EXPECT_EQ(0U, applies(plan, 0x5000));
}

TEST(Fault, CommandFilterCountsItsOwnRequestsOnly)
{
    FaultPlan plan;
    plan.add(parse({"status", "7", "cmd=0x5001", "from=2"}));
    EXPECT_EQ(0U, applies(plan, 0x5000));
    EXPECT_EQ(0U, applies(plan, 0x5001));
    EXPECT_EQ(0U, applies(plan, 0x5000));
    EXPECT_EQ(1U, applies(plan, 0x5001));
}

TEST(Fault, SameFaultReplacesTheOld)
{
    FaultPlan plan;
    plan.add(parse({"late", "100"}));
    plan.add(parse({"late", "200"}));
    plan.add(parse({"late", "300", "cmd=0x5001"}));
    ASSERT_EQ(2U, plan.rules().size());
    EXPECT_EQ(200U, plan.rules()[0].first);
    plan.clear();
    EXPECT_EQ(0U, applies(plan, 0x5001));
}

TEST(Fault, PacketIsNackedByItsNumber)
{
    FaultPlan plan;
    plan.add(parse({"nack-packet", "3", "2"}));
    EXPECT_EQ(0U, applies(plan, 0x4200, 1));
    EXPECT_EQ(1U, applies(plan, 0x4200, 3));
    EXPECT_EQ(1U, applies(plan, 0x4200, 3));
    EXPECT_EQ(0U, applies(plan, 0x4200, 3));
    EXPECT_EQ(0U, applies(plan, 0x5000, 3));
}

TEST(Fault, StartIsRefusedSoManyTimes)
{
    FaultPlan plan;
    plan.add(parse({"refuse-start", "1"}));
    EXPECT_EQ(0U, applies(plan, 0x5000));
    EXPECT_EQ(1U, applies(plan, 0x4000));
    EXPECT_EQ(0U, applies(plan, 0x4000));
}

TEST(Fault, ConditionsDoNotApplyToRequests)
{
    FaultPlan plan;
    plan.add(parse({"busy"}));
    plan.add(parse({"open-error", "times=1"}));
    plan.add(parse({"denied"}));
    EXPECT_EQ(0U, applies(plan, 0x5000));
    EXPECT_TRUE(plan.isActive(FaultKind::Denied));
    EXPECT_TRUE(plan.isActive(FaultKind::Busy));
    EXPECT_FALSE(plan.isActive(FaultKind::Frozen));
    EXPECT_TRUE(plan.countOpen());
    EXPECT_FALSE(plan.countOpen());
}

} // namespace virtualcamera
