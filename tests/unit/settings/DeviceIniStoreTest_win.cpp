#include "DeviceIniStoreTest.h"

#include "QtPrinters.h"

// The format's own limit there; what is saved is at least found again.
TEST_F(DeviceIniStoreTest, SerialNumbersThatDifferInCaseShareAGroup)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    EXPECT_EQ(m_store.read(QStringLiteral("sn1")), pictureOf(100));
    ASSERT_TRUE(m_store.write(QStringLiteral("sn1"), pictureOf(120)));
    EXPECT_EQ(m_store.read(QStringLiteral("sn1")), pictureOf(120));
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), pictureOf(120));
    EXPECT_EQ(contents().count("bright="), 1);
}
