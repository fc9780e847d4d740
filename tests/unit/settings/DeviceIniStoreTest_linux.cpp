#include "DeviceIniStoreTest.h"

#include "QtPrinters.h"

TEST_F(DeviceIniStoreTest, SerialNumbersAreCaseSensitive)
{
    const QStringList serials{QStringLiteral("SN1"), QStringLiteral("sn1"),
                              QStringLiteral("General"), QStringLiteral("general"),
                              QStringLiteral("GENERAL")};
    for (int i = 0; i < serials.size(); ++i)
        ASSERT_TRUE(m_store.write(serials.at(i), pictureOf(i))) << i;
    for (int i = 0; i < serials.size(); ++i)
        EXPECT_EQ(m_store.read(serials.at(i)), pictureOf(i)) << i;
    EXPECT_EQ(m_store.read(QStringLiteral("Sn1")), std::nullopt);
}
