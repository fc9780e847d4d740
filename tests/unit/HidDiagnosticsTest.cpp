#include "HidDiagnostics.h"
#include "HidTest.h"

namespace {

class HidDiagnosticsTest : public HidTest
{
protected:
    void SetUp() override
    {
        hidapi.setStrings({L"Maker", L"Camera", L"SN-1", {{1, L"First"}, {2, L"Second"}}});
    }

    void logIdentity() { HidDiagnostics::logIdentity("/dev/hidraw2"); }
};

} // namespace

TEST_F(HidDiagnosticsTest, AsksForEveryStringAndOneReportThenCloses)
{
    logIdentity();
    EXPECT_EQ(
        hidapi.calls(),
        (QStringList{"hid_init()", "hid_open_path(/dev/hidraw2)",
                     "hid_get_manufacturer_string(#1, 255)", "hid_get_product_string(#1, 255)",
                     "hid_get_serial_number_string(#1, 255)", "hid_get_indexed_string(#1, 1, 255)",
                     "hid_read_timeout(#1, 1024, 20)", "hid_close(#1)", "hid_exit()"}));
}

TEST_F(HidDiagnosticsTest, StringsAreLoggedWithTheCodeOfTheSerialNumbersFirstCharacter)
{
    logIdentity();
    EXPECT_EQ(log.texts(),
              (QStringList{"Manufacturer String: Maker", "Product String: Camera",
                           "Serial Number String: (83) SN-1", "Indexed String 1: First"}));
}

TEST_F(HidDiagnosticsTest, StringsThatCannotBeReadAreEmpty)
{
    hidapi.setStrings({});
    logIdentity();
    EXPECT_EQ(log.texts(), (QStringList{"Manufacturer String: ", "Product String: ",
                                        "Serial Number String: (0) ", "Indexed String 1: "}));
}

TEST_F(HidDiagnosticsTest, StringThatFillsItsBufferEndsThere)
{
    hidapi.setStrings({std::wstring(400, L'x')});
    logIdentity();
    EXPECT_EQ(log.texts().first(), "Manufacturer String: " + QString(255, 'x'));
}

TEST_F(HidDiagnosticsTest, StringWithAPlaceholderIsLoggedAsItIs)
{
    hidapi.setStrings({L"%1 %2", L"%1", L"%2 %1", {}});
    logIdentity();
    EXPECT_EQ(log.texts().mid(0, 3),
              (QStringList{"Manufacturer String: %1 %2", "Product String: %1",
                           "Serial Number String: (37) %2 %1"}));
}

TEST_F(HidDiagnosticsTest, FirstFourBytesOfAWaitingReportAreLogged)
{
    hidapi.queueAnswer(QByteArray::fromHex("01ff0a800506"));
    logIdentity();
    EXPECT_EQ(log.texts().mid(4),
              (QStringList{"buf[0]: 1\n", "buf[1]: 255\n", "buf[2]: 10\n", "buf[3]: 128\n"}));
}

TEST_F(HidDiagnosticsTest, ShortReportIsLoggedAsFarAsItGoes)
{
    hidapi.queueAnswer(QByteArray::fromHex("0102"));
    logIdentity();
    EXPECT_EQ(log.texts().mid(4), (QStringList{"buf[0]: 1\n", "buf[1]: 2\n"}));
}

TEST_F(HidDiagnosticsTest, FailedReadLogsNoReport)
{
    hidapi.queueReadResult(-1);
    logIdentity();
    EXPECT_EQ(log.texts().size(), 4);
}

TEST_F(HidDiagnosticsTest, InterfaceThatCannotBeOpenedLogsNothing)
{
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    logIdentity();
    EXPECT_EQ(hidapi.calls(),
              (QStringList{"hid_init()", "hid_open_path(/dev/hidraw2)", "hid_exit()"}));
    EXPECT_EQ(log.texts(), QStringList());
}
