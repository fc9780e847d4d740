#include "PermissionAdvice.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

PermissionAdvice::Facts inOrder()
{
    PermissionAdvice::Facts facts;
    facts.isRuleInstalled = true;
    facts.user = "alice";
    facts.neededGroup = "plugdev";
    facts.nodeGroup = "plugdev";
    facts.isInGroup = true;
    facts.isActive = true;
    return facts;
}

TEST(PermissionAdvice, NamesTheMissingRuleFirst)
{
    PermissionAdvice::Facts facts = inOrder();
    facts.isRuleInstalled = false;
    facts.isInGroup = false;
    EXPECT_TRUE(PermissionAdvice::hint(facts).contains("70-marviktools.rules is missing"));
}

TEST(PermissionAdvice, NamesTheMissingGroupAndTheCommand)
{
    PermissionAdvice::Facts facts = inOrder();
    facts.isInGroup = false;
    facts.isActive = false;
    EXPECT_TRUE(PermissionAdvice::hint(facts).contains("sudo adduser alice plugdev"));
}

TEST(PermissionAdvice, SessionBeforeTheGroup)
{
    PermissionAdvice::Facts facts = inOrder();
    facts.isActive = false;
    EXPECT_TRUE(PermissionAdvice::hint(facts).contains("log in again"));
    EXPECT_FALSE(PermissionAdvice::hint(facts).contains("adduser"));
}

TEST(PermissionAdvice, NodeThatTheRuleHasNotReached)
{
    PermissionAdvice::Facts facts = inOrder();
    facts.nodeGroup = "root";
    EXPECT_TRUE(PermissionAdvice::hint(facts).contains("\"root\" and not to \"plugdev\""));
}

TEST(PermissionAdvice, NothingMissing)
{
    EXPECT_TRUE(PermissionAdvice::hint(inOrder()).contains("access list"));
}

} // namespace
