#include "DeviceIniStoreTest.h"

#include "QtPrinters.h"

// A limit of the file format on Windows; saved values are still found again.
TEST_F(DeviceIniStoreTest, SerialNumbersThatDifferInCaseShareAGroup)
{
    ASSERT_TRUE(m_store.write(QStringLiteral("SN1"), pictureOf(100)));
    EXPECT_EQ(m_store.read(QStringLiteral("sn1")), pictureOf(100));
    ASSERT_TRUE(m_store.write(QStringLiteral("sn1"), pictureOf(120)));
    EXPECT_EQ(m_store.read(QStringLiteral("sn1")), pictureOf(120));
    EXPECT_EQ(m_store.read(QStringLiteral("SN1")), pictureOf(120));
    EXPECT_EQ(contents().count("bright="), 1);
}
