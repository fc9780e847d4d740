#include "HidTest.h"
#include "UVCHid.h"

#include <QRegularExpression>

namespace {

class UVCHidLink : public HidTest
{
protected:
    void plugInOther(const QByteArray& path, unsigned short vid = 0x1111,
                     unsigned short pid = 0x2222)
    {
        hidapi.plugIn({path, vid, pid, std::nullopt});
    }

    QStringList logged(const char* beginning) const
    {
        return log.texts().filter(QRegularExpression(QStringLiteral("^%1").arg(beginning)));
    }
};

using HidInventory = UVCHidLink;

} // namespace

// --- The persistent handle

TEST_F(UVCHidLink, LooksForACameraThenOpensTheGivenPath)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    UVCHid hid;
    EXPECT_TRUE(hid.createHandleWithPath("/dev/hidraw1"));
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_enumerate(0, 0)", "hid_free_enumeration()",
                                           "hid_init()", "hid_open_path(/dev/hidraw1)"}));
    EXPECT_EQ(hid.devicePath(), "/dev/hidraw1");
    EXPECT_EQ(hid.vendorId(), 0xB206);
    EXPECT_EQ(hid.productId(), 0xB215);
    EXPECT_EQ(hid.errorText(), "");
}

TEST_F(UVCHidLink, OpensTheGivenPathWhateverItsIds)
{
    plugInOther("/dev/hidraw0");
    hidapi.plugIn(camera("/dev/hidraw1"));
    UVCHid hid;
    EXPECT_TRUE(hid.createHandleWithPath("/dev/hidraw0"));
    EXPECT_EQ(hidapi.calls().last(), "hid_open_path(/dev/hidraw0)");
    EXPECT_EQ(hid.vendorId(), 0xB206);
    EXPECT_EQ(hid.productId(), 0xB215);
}

TEST_F(UVCHidLink, WithoutACameraNothingIsOpened)
{
    plugInOther("/dev/hidraw0");
    UVCHid hid;
    EXPECT_FALSE(hid.createHandleWithPath("/dev/hidraw0"));
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_enumerate(0, 0)", "hid_free_enumeration()"}));
    EXPECT_EQ(hid.devicePath(), "/dev/hidraw0");
    EXPECT_EQ(log.texts().size(), 2);
}

TEST_F(UVCHidLink, WithoutAnyInterfaceNothingIsOpened)
{
    UVCHid hid;
    EXPECT_FALSE(hid.createHandleWithPath("/dev/hidraw0"));
    EXPECT_EQ(hidapi.calls().filter("hid_open").size(), 0);
    EXPECT_EQ(log.texts(), QStringList{R"(In device path:  "/dev/hidraw0")"});
}

TEST_F(UVCHidLink, BothIdsMustBeThoseOfACamera)
{
    plugInOther("/dev/hidraw0", 0xB206, 0xB214);
    plugInOther("/dev/hidraw1", 0xB207, 0xB215);
    plugInOther("/dev/hidraw2", 0xB215, 0xB206);
    UVCHid hid;
    EXPECT_FALSE(hid.createHandleWithPath("/dev/hidraw0"));
    EXPECT_EQ(hidapi.calls().filter("hid_open").size(), 0);
}

TEST_F(UVCHidLink, LogListsEveryInterfaceUpToTheFirstCamera)
{
    plugInOther("/dev/hidraw0");
    hidapi.plugIn({QByteArray("/dev/hidraw1"), 0x3333, 0x4444, L"Somebody"});
    hidapi.plugIn(camera("/dev/hidraw2"));
    hidapi.plugIn(camera("/dev/hidraw3"));
    UVCHid hid;
    EXPECT_TRUE(hid.createHandleWithPath("/dev/hidraw3"));

    const QStringList texts = log.texts();
    ASSERT_EQ(texts.size(), 6);
    EXPECT_EQ(texts.at(0), R"(In device path:  "/dev/hidraw3")");
    EXPECT_EQ(texts.at(1), "Out device path:  /dev/hidraw0  --  0x0");
    for (const int i : {2, 3}) {
        const QRegularExpression line(
            QStringLiteral("^Out device path:  /dev/hidraw%1  --  0x[0-9a-f]{2,}$").arg(i - 1));
        EXPECT_TRUE(line.match(texts.at(i)).hasMatch()) << texts.at(i).toStdString();
    }
    EXPECT_EQ(texts.at(4), QStringLiteral("vid:  %1").arg(0xB206));
    EXPECT_EQ(texts.at(5), QStringLiteral("pid:  %1").arg(0xB215));
    EXPECT_EQ(log.texts(QtDebugMsg).size(), 6);
}

TEST_F(UVCHidLink, LibraryThatDoesNotStartIsCriticalAndNothingIsOpened)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    hidapi.setInitResult(-1);
    UVCHid hid;
    EXPECT_FALSE(hid.createHandleWithPath("/dev/hidraw1"));
    EXPECT_EQ(hidapi.calls().last(), "hid_init()");
    EXPECT_EQ(log.texts(QtCriticalMsg), QStringList{"hid init failed"});
}

TEST_F(UVCHidLink, PathThatCannotBeOpenedIsCritical)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    hidapi.setOpenRule([](const QByteArray&) { return false; });
    UVCHid hid;
    EXPECT_FALSE(hid.createHandleWithPath("/dev/hidraw1"));
    EXPECT_EQ(log.texts(QtCriticalMsg), QStringList{"Open device hid failed."});
}

TEST_F(UVCHidLink, PathIsPassedAsUtf8)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    QByteArray opened;
    hidapi.setOpenRule([&opened](const QByteArray& path) {
        opened = path;
        return true;
    });
    UVCHid hid;
    EXPECT_TRUE(hid.createHandleWithPath(QStringLiteral("/dev/kamera-\u00E9\u4E2D")));
    EXPECT_EQ(opened, QByteArray("/dev/kamera-\xC3\xA9\xE4\xB8\xAD"));
}

TEST_F(UVCHidLink, OpeningByIdsKeepsThemAndOpensTheRememberedPath)
{
    UVCHid hid;
    EXPECT_FALSE(hid.createHandleWithPath("/dev/hidraw5"));
    hidapi.forgetCalls();
    EXPECT_TRUE(hid.createHandleWithid(0x0102, 0x0304));
    EXPECT_EQ(hid.vendorId(), 0x0102);
    EXPECT_EQ(hid.productId(), 0x0304);
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_init()", "hid_open_path(/dev/hidraw5)"}));
}

TEST_F(UVCHidLink, HandleStaysOpenUntilTheLinkEndsAndTheLibraryIsLeftLast)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    {
        UVCHid hid;
        ASSERT_TRUE(hid.createHandleWithPath("/dev/hidraw1"));
        hid.readInfoFromDevice(0x5001);
        EXPECT_EQ(hidapi.openHandles(), 1);
        hidapi.forgetCalls();
    }
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_close(#1)", "hid_exit()"}));
    EXPECT_EQ(hidapi.initBalance(), 0);
}

TEST_F(UVCHidLink, LinkThatNeverOpenedClosesNothing)
{
    {
        const UVCHid hid;
    }
    EXPECT_EQ(hidapi.calls(), QStringList{"hid_exit()"});
}

TEST_F(UVCHidLink, SecondOpeningLeavesOneHandle)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    UVCHid hid;
    ASSERT_TRUE(hid.createHandleWithPath("/dev/hidraw1"));
    ASSERT_TRUE(hid.createHandleWithPath("/dev/hidraw2"));
    EXPECT_EQ(hidapi.openHandles(), 1);
    EXPECT_EQ(hid.devicePath(), "/dev/hidraw2");
}

// --- The inventory

TEST_F(HidInventory, TakesEveryInterfaceOfEveryMaker)
{
    hidapi.plugIn({QByteArray("/dev/hidraw0"), 0x1111, 0x2222, L"Caf\u00E9 \u4E2D"});
    hidapi.plugIn(camera("/dev/hidraw1"));
    QMap<QString, HidDevices> devices;
    UVCHid::getHidDevices(devices);

    EXPECT_EQ(devices.keys(), (QStringList{"/dev/hidraw0", "/dev/hidraw1"}));
    EXPECT_EQ(devices.value("/dev/hidraw0"),
              (HidDevices{"/dev/hidraw0", 0x1111, 0x2222, QStringLiteral("Caf\u00E9 \u4E2D")}));
    EXPECT_EQ(devices.value("/dev/hidraw1"), (HidDevices{"/dev/hidraw1", 0xB206, 0xB215, "Maker"}));
    EXPECT_EQ(hidapi.calls(), (QStringList{"hid_enumerate(0, 0)", "hid_free_enumeration()"}));
}

TEST_F(HidInventory, DeviceWithSeveralCollectionsAppearsOncePerPath)
{
    hidapi.plugIn({QByteArray("/dev/hidraw0"), 0x1111, 0x2222, L"First"});
    hidapi.plugIn({QByteArray("/dev/hidraw0"), 0x1111, 0x2222, L"Second"});
    hidapi.plugIn({QByteArray("/dev/hidraw1"), 0x1111, 0x2222, L"Third"});
    QMap<QString, HidDevices> devices;
    UVCHid::getHidDevices(devices);

    EXPECT_EQ(devices.size(), 2);
    EXPECT_EQ(devices.value("/dev/hidraw0").manufacturer, "Second");
    EXPECT_EQ(devices.value("/dev/hidraw1").manufacturer, "Third");
}

TEST_F(HidInventory, KeepsKnownEntriesAndReplacesThoseOfTheSamePath)
{
    hidapi.plugIn(camera("/dev/hidraw1"));
    QMap<QString, HidDevices> devices{{"/dev/hidraw1", {"/dev/hidraw1", 1, 2, "Old"}},
                                      {"/dev/hidraw9", {"/dev/hidraw9", 3, 4, "Gone"}}};
    UVCHid::getHidDevices(devices);
    EXPECT_EQ(devices.size(), 2);
    EXPECT_EQ(devices.value("/dev/hidraw1"), (HidDevices{"/dev/hidraw1", 0xB206, 0xB215, "Maker"}));
    EXPECT_EQ(devices.value("/dev/hidraw9"), (HidDevices{"/dev/hidraw9", 3, 4, "Gone"}));
}

TEST_F(HidInventory, TextsTheLibraryDoesNotHaveAreEmpty)
{
    hidapi.plugIn({std::nullopt, 0x1111, 0x2222, std::nullopt});
    QMap<QString, HidDevices> devices;
    UVCHid::getHidDevices(devices);
    EXPECT_EQ(devices.keys(), QStringList{QString()});
    EXPECT_EQ(devices.first(), (HidDevices{QString(), 0x1111, 0x2222, QString()}));
}

TEST_F(HidInventory, WithoutInterfacesNothingIsAdded)
{
    QMap<QString, HidDevices> devices;
    UVCHid::getHidDevices(devices);
    EXPECT_TRUE(devices.isEmpty());
}
