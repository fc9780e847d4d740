#include "CameraHandle.h"
#include "CameraModels.h"
#include "DeviceHomePage.h"
#include "HidCommands.h"
#include "LoadingDialog.h"
#include "LogCapture.h"
#include "MaskForm.h"
#include "PendingTimers.h"
#include "ShownHome.h"
#include "SvtaMessageDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "SvtaVersionUpdateDialog.h"
#include "TransPrewBtn.h"
#include "UVCCamera.h"

#include <memory>
#include <QLabel>
#include <QListWidget>
#include <QtTest>

using Pages = SvtaPagesView;
using HidMap = QMap<QString, HidDevices>;

namespace {

constexpr int kPluggedIn = 0;
constexpr int kRemoved = 1;
constexpr int kLeaveDelayMs = 20;

const QByteArray kVersion = QByteArray::fromHex("010005");
const QByteArray kNewVersion = QByteArray::fromHex("010006");
const QByteArray kSerial = "SVAA009500551";

enum Outcome { Nothing, List, Complete, Failed };

HidDevices device(const QString& path, quint16 vendor, quint16 product)
{
    return {path, vendor, product, QStringLiteral("Maker")};
}

/// A map of the named devices: "own" is the open camera, "second" and "third" are cameras of the
/// same model, "vendor" and "product" differ in one id, "taken" is another maker's device at the
/// path of the open camera.
HidMap devices(const QByteArray& names)
{
    const quint16 vendor = CameraModels::rows().begin()->vendorId;
    const quint16 product = CameraModels::rows().begin()->productId;
    const QMap<QByteArray, HidDevices> known{
        {"own", device(ScriptedCameras::hidPath(0), vendor, product)},
        {"second", device(ScriptedCameras::hidPath(1), vendor, product)},
        {"third", device(ScriptedCameras::hidPath(2), vendor, product)},
        {"vendor", device(ScriptedCameras::hidPath(3), 0x1111, product)},
        {"product", device(ScriptedCameras::hidPath(4), vendor, 0x2222)},
        {"taken", device(ScriptedCameras::hidPath(0), 0x1111, 0x2222)}};
    HidMap map;
    for (const QByteArray& name : names.simplified().split(' ')) {
        if (known.contains(name))
            map.insert(known[name].path, known[name]);
    }
    return map;
}

} // namespace

Q_DECLARE_METATYPE(Outcome)

/// The main window's reaction to each change of the devices.
class SorvantaHomeReconciliationTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void decision_data();
    void decision();
    void lastCameraOfTheModelIsAsked();
    void requestToAnotherCameraDoesNotChangeTheLink();
    void returningCameraIsReachedUnderItsNewName();
    void cameraThatReturnsBesideAnotherIsAsked();
    void removalMeansNothingWhileNoCameraIsOpen();
    void editsOfOneCameraDoNotReachTheNext();
    void listKeepsFiveCardsHeightWhenTheOpenCameraLeaves();
    void noCameraIsAskedWithoutAReason_data();
    void noCameraIsAskedWithoutAReason();
    void oneQuestionIsHiddenInItsOrder();
    void changeIsLogged();
    void verificationIsLogged();
    void changeOfOtherDevicesLogsOnlyTheDevices();

private:
    void show(int page);
    void change(const QByteArray& present, const QByteArray& before, int status)
    {
        m_home->window().slotUpdateCameraListFinished({}, {}, devices(present), devices(before),
                                                      status);
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeReconciliationTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    m_home->cameras().setVersion(kVersion);
    m_home->cameras().setSerialNumber(kSerial);
    m_home->window().showView(Pages::HomePage);
    QVERIFY(m_home->openSettings());
    m_home->find<TransPrewBtn>()->setPreviewOpen(true);
}

void SorvantaHomeReconciliationTest::cleanup()
{
    QCOMPARE(m_home->cameras().hidapi().misuse(), QStringList());
    m_home.reset();
    m_log.reset();
}

void SorvantaHomeReconciliationTest::show(int page)
{
    if (page == Pages::InfoPage)
        m_home->click("deviceInfoBtn");
    else if (page != Pages::SettingPage)
        m_home->window().showView(static_cast<Pages::ViewPageEnum>(page));
    QCOMPARE(m_home->page(), page);
}

void SorvantaHomeReconciliationTest::decision_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<bool>("loading");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("present");
    QTest::addColumn<QByteArray>("serial");
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("connected");
    QTest::addColumn<Outcome>("outcome");

    struct PageName
    {
        int page;
        const char* name;
    };
    const PageName pages[] = {{Pages::HomePage, "list"},
                              {Pages::InfoPage, "information"},
                              {Pages::AboutUsPage, "about"},
                              {Pages::SettingPage, "settings"}};
    const auto removal = [](const PageName& page, const char* what, bool loading,
                            const char* before, const char* present, Outcome outcome) {
        QTest::addRow("%s%s: %s", page.name, loading ? ", loading" : "", what)
            << page.page << loading << kRemoved << QByteArray(before) << QByteArray(present)
            << kSerial << kVersion << true << outcome;
    };
    for (const PageName& page : pages) {
        // A camera whose pages were left for the list is not open: there is nothing to leave.
        const Outcome left = page.page == Pages::HomePage ? Nothing : List;
        removal(page, "own camera goes", false, "own", "", left);
        removal(page, "own camera goes, another stays", false, "own second", "second", left);
        removal(page, "own camera goes, its name is another maker's", false, "own", "taken",
                Nothing);
        removal(page, "other camera goes", false, "own second", "own", Nothing);
        removal(page, "other vendor goes", false, "own vendor", "own", Nothing);
        removal(page, "other product goes", false, "own product", "own", Nothing);
        removal(page, "own camera is exchanged in one go", false, "own", "second", left);
        removal(page, "nothing changes", false, "own", "own", Nothing);
        removal(page, "own camera goes", true, "own", "", Nothing);
        removal(page, "own camera goes, another stays", true, "own second", "second", Nothing);
    }

    const auto insertion = [](const PageName& page, const char* what, bool loading,
                              const char* before, const char* present, const QByteArray& serial,
                              const QByteArray& version, bool connected, Outcome outcome) {
        QTest::addRow("%s%s: %s", page.name, loading ? ", loading" : "", what)
            << page.page << loading << kPluggedIn << QByteArray(before) << QByteArray(present)
            << serial << version << connected << outcome;
    };
    const QByteArray other = "SVAA009500552";
    for (const PageName& page : pages) {
        const bool judged = page.page == Pages::InfoPage;
        insertion(page, "new version comes", true, "", "own", kSerial, kNewVersion, true,
                  judged ? Complete : Nothing);
        insertion(page, "new version comes under another name", true, "", "second", kSerial,
                  kNewVersion, true, judged ? Complete : Nothing);
        insertion(page, "same version comes", true, "", "own", kSerial, kVersion, true,
                  judged ? Failed : Nothing);
        insertion(page, "new version comes unconnected", true, "", "own", kSerial, kNewVersion,
                  false, judged ? Failed : Nothing);
        insertion(page, "same version comes unconnected", true, "", "own", kSerial, kVersion, false,
                  judged ? Failed : Nothing);
        insertion(page, "other serial number comes", true, "", "second", other, kNewVersion, true,
                  Nothing);
        insertion(page, "other vendor comes", true, "", "vendor", kSerial, kNewVersion, true,
                  Nothing);
        insertion(page, "other product comes", true, "", "product", kSerial, kNewVersion, true,
                  Nothing);
        insertion(page, "camera comes while another goes", true, "second", "own", kSerial,
                  kNewVersion, true, judged ? Complete : Nothing);
        insertion(page, "new version is there again at once", true, "own", "own", kSerial,
                  kNewVersion, true, judged ? Complete : Nothing);
        insertion(page, "same version is still there", true, "own", "own", kSerial, kVersion, true,
                  Nothing);
        insertion(page, "new version comes", false, "", "own", kSerial, kNewVersion, true, Nothing);
        insertion(page, "other camera comes", false, "own", "own second", other, kVersion, true,
                  Nothing);
    }
}

void SorvantaHomeReconciliationTest::decision()
{
    QFETCH(const int, page);
    QFETCH(const bool, loading);
    QFETCH(const QByteArray, serial);
    QFETCH(const QByteArray, version);
    QFETCH(const bool, connected);
    QFETCH(const Outcome, outcome);
    show(page);
    if (loading)
        m_home->find<LoadingDialog>()->show();
    m_home->cameras().setSerialNumber(serial);
    m_home->cameras().setVersion(version);
    m_home->cameras().hidapi().respondTo(HidCommands::ConnectionProbe,
                                         {QByteArray(1, connected ? '\0' : '\1')});

    QFETCH(const QByteArray, present);
    QFETCH(const QByteArray, before);
    QFETCH(const int, status);
    change(present, before, status);

    QCOMPARE(PendingTimers::count(kLeaveDelayMs), outcome == List ? 1 : 0);
    if (outcome == List) {
        QCOMPARE(m_home->page(), page); // a moment later
        QVERIFY(PendingTimers::fire(kLeaveDelayMs));
    }
    const bool onList = outcome == List || outcome == Complete;
    QCOMPARE(m_home->page(), onList ? int(Pages::HomePage) : page);
    QCOMPARE(m_home->find<LoadingDialog>()->isVisible(), loading && outcome == Nothing);
    QCOMPARE(m_home->find<SvtaMessageDialog>()->isVisible(), outcome == Failed);
    QCOMPARE(m_home->find<TransPrewBtn>()->isPreviewOpen(), outcome != List);
    QCOMPARE(m_home->toast(), outcome == Complete ? QStringLiteral("Update Complete") : QString());
}

void SorvantaHomeReconciliationTest::lastCameraOfTheModelIsAsked()
{
    show(Pages::InfoPage);
    m_home->find<LoadingDialog>()->show();
    m_home->cameras().setVersion(kNewVersion);
    m_home->cameras().hidapi().forgetCalls();
    change("own second third vendor product", "own second vendor product", kPluggedIn);
    QStringList opened = m_home->cameras().hidapi().calls().filter(QStringLiteral("hid_open_path"));
    opened.removeDuplicates();
    QCOMPARE(opened,
             QStringList{QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(2))});
    QCOMPARE(m_home->toast(), QStringLiteral("Update Complete"));
}

/// The pages still belong to the open camera, and so do the commands that they send.
void SorvantaHomeReconciliationTest::requestToAnotherCameraDoesNotChangeTheLink()
{
    show(Pages::InfoPage);
    m_home->cameras().hidapi().forgetCalls();
    change("own second", "own", kPluggedIn);
    const QStringList opened =
        m_home->cameras().hidapi().calls().filter(QStringLiteral("hid_open_path"));
    QVERIFY(opened.contains(QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(1))));
    QCOMPARE(opened.last(), QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(0)));
    QCOMPARE(m_home->cameras().hidapi().openHandles(), 1);
}

void SorvantaHomeReconciliationTest::cameraThatReturnsBesideAnotherIsAsked()
{
    show(Pages::InfoPage);
    m_home->find<LoadingDialog>()->show();
    change("second", "own second", kRemoved);
    m_home->cameras().setVersion(kNewVersion);
    m_home->cameras().hidapi().forgetCalls();
    change("own second", "second", kPluggedIn);
    QStringList opened = m_home->cameras().hidapi().calls().filter(QStringLiteral("hid_open_path"));
    opened.removeDuplicates();
    QCOMPARE(opened,
             QStringList{QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(0))});
    QCOMPARE(m_home->toast(), QStringLiteral("Update Complete"));
}

void SorvantaHomeReconciliationTest::removalMeansNothingWhileNoCameraIsOpen()
{
    m_home->window().showView(Pages::HomePage);
    m_home->window().showView(Pages::AboutUsPage);
    m_home->find<SvtaVersionUpdateDialog>()->show();
    change("", "own", kRemoved);
    QCOMPARE(PendingTimers::count(kLeaveDelayMs), 0);
    QCOMPARE(m_home->page(), int(Pages::AboutUsPage));
    QVERIFY(m_home->find<SvtaVersionUpdateDialog>()->isVisible());
}

/// The first camera is edited and pulled out; the picture of the second one cannot be opened, so
/// its values are never read.
void SorvantaHomeReconciliationTest::editsOfOneCameraDoNotReachTheNext()
{
    m_home->window().slotCameraViewChange(90);
    m_home->window().slotPickupSensitivitySwitch(80);
    QVERIFY(!m_home->window().isSameData());
    change("", "own", kRemoved);
    QVERIFY(PendingTimers::fire(kLeaveDelayMs));

    DeviceWidgetInfo second = ShownHome::connectedCamera();
    second.hidPath = ScriptedCameras::hidPath(1);
    second.path = ScriptedCameras::videoPath(1);
    m_home->cameras().video().preview().failing.insert(QStringLiteral("bindCaptureSource"));
    m_home->cameras().hidapi().forgetCalls();
    QVERIFY(m_home->openSettings(second));
    QVERIFY(m_home->window().isSameData());
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY(!m_home->find<SvtaParamNotSaveDialog>()->isVisible());
    for (const QByteArray& frame : m_home->cameras().hidapi().writtenFrames())
        QCOMPARE(int(frame.at(5)), 2); // reads only
}

void SorvantaHomeReconciliationTest::listKeepsFiveCardsHeightWhenTheOpenCameraLeaves()
{
    auto* list = m_home->find<DeviceHomePage>();
    m_home->cameras().plugIn(7);
    QList<UVCDeviceInfo> cameras;
    UVCCamera::enumerateCameras(cameras);
    list->slotUpdateCameraList(cameras, kPluggedIn);
    DeviceWidgetInfo last = ShownHome::connectedCamera();
    last.hidPath = ScriptedCameras::hidPath(6);
    last.path = ScriptedCameras::videoPath(6);
    QVERIFY(m_home->openSettings(last));

    m_home->cameras().plugIn(6);
    cameras.clear();
    UVCCamera::enumerateCameras(cameras);
    list->slotUpdateCameraList(cameras, kRemoved);
    QVERIFY(PendingTimers::fire(kLeaveDelayMs));
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QCOMPARE(m_home->find<QListWidget>("deviceList")->height(), 600);
}

void SorvantaHomeReconciliationTest::returningCameraIsReachedUnderItsNewName()
{
    show(Pages::InfoPage);
    DeviceWidgetInfo renamed = CameraHandle::instance().currentDevice();
    QCOMPARE(renamed.hidPath, ScriptedCameras::hidPath(0));
    renamed.hidPath = ScriptedCameras::hidPath(1);
    renamed.path = ScriptedCameras::videoPath(1);
    m_home->window().slotSetDeviceWidget({{renamed.path, renamed}});
    m_home->find<LoadingDialog>()->show();
    change("second", "", kPluggedIn);
    QVERIFY(m_home->find<SvtaMessageDialog>()->isVisible());
    QCOMPARE(CameraHandle::instance().currentDevice().hidPath, ScriptedCameras::hidPath(1));
    QCOMPARE(CameraHandle::instance().currentDevice().path, ScriptedCameras::videoPath(1));
}

void SorvantaHomeReconciliationTest::noCameraIsAskedWithoutAReason_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("present");
    QTest::addColumn<int>("status");
    QTest::newRow("other vendor on the information page")
        << int(Pages::InfoPage) << QByteArray("own") << QByteArray("own vendor") << kPluggedIn;
    QTest::newRow("other camera on the settings page")
        << int(Pages::SettingPage) << QByteArray("own") << QByteArray("own second") << kPluggedIn;
    QTest::newRow("other camera leaves the information page")
        << int(Pages::InfoPage) << QByteArray("own second") << QByteArray("own") << kRemoved;
}

void SorvantaHomeReconciliationTest::noCameraIsAskedWithoutAReason()
{
    QFETCH(const int, page);
    QFETCH(const QByteArray, before);
    QFETCH(const QByteArray, present);
    QFETCH(const int, status);
    show(page);
    m_home->cameras().hidapi().forgetCalls();
    change(present, before, status);
    QCOMPARE(m_home->cameras().hidapi().calls(), QStringList());
}

void SorvantaHomeReconciliationTest::oneQuestionIsHiddenInItsOrder()
{
    const QList<QDialog*> questions{
        m_home->find<SvtaParamNotSaveDialog>(), m_home->find<SvtaParamResetDialog>(),
        m_home->find<SvtaParamSaveDialog>(), m_home->find<SvtaVersionUpdateDialog>()};
    for (QDialog* question : questions)
        question->show();
    for (int hidden = 1; hidden <= questions.size(); ++hidden) {
        QVERIFY(m_home->openSettings());
        change("", "own", kRemoved);
        QVERIFY(PendingTimers::fire(kLeaveDelayMs));
        for (int i = 0; i < questions.size(); ++i)
            QCOMPARE(questions[i]->isVisible(), i >= hidden);
    }
}

void SorvantaHomeReconciliationTest::changeIsLogged()
{
    m_log->clear();
    change("second vendor", "own second vendor", kRemoved);
    const QStringList said = m_log->texts();
    const QString own = ScriptedCameras::hidPath(0);
    const QString second = ScriptedCameras::hidPath(1);
    const auto quoted = [](const QString& text) { return QStringLiteral("\"%1\"").arg(text); };
    QCOMPARE(said.filter(QStringLiteral("In Loop deviceHidMaps curHidDevice path =")).size(), 2);
    QCOMPARE(said.filter(QStringLiteral("In Loop oldDeviceHidMaps curHidDevice path =")).size(), 3);
    QVERIFY(said.contains(QStringLiteral("curHidDevice.path = ") + quoted(second)));
    QVERIFY(said.contains(QStringLiteral("mDeviceWidgetInfo.hidPath = ") + quoted(own)));
    const QStringList summary = said.filter(QStringLiteral("当前热插拔状态 ="));
    QCOMPARE(summary.size(), 1);
    QVERIFY(summary.first().contains(QStringLiteral("当前页 =")));
    QVERIFY(said.contains(QStringLiteral("isContainsCurDev false")));
    QVERIFY(said.contains(QStringLiteral("拔出设备，不包含mDeviceWidgetInfo.hidPath")));
}

void SorvantaHomeReconciliationTest::verificationIsLogged()
{
    show(Pages::InfoPage);
    m_home->find<LoadingDialog>()->show();
    m_log->clear();
    change("own", "", kPluggedIn);
    const QStringList said = m_log->texts();
    int last = -1;
    for (const char* text :
         {"插入设备，在设备详情页", "mDeviceWidgetInfo.deviceVersion =", "mDeviceWidgetInfo.sn =",
          "sn =", "loading页状态 = true", "插入的设备是更新的设备，并且loading页显示",
          "hid_status true", "更新设备状态Connected", "版本号相同，更新失败"}) {
        const QString wanted = QString::fromUtf8(text);
        int found = last + 1;
        while (found < said.size() && !said[found].startsWith(wanted))
            ++found;
        QVERIFY2(found < said.size(), text);
        last = found;
    }
}

void SorvantaHomeReconciliationTest::changeOfOtherDevicesLogsOnlyTheDevices()
{
    m_log->clear();
    change("own vendor", "own", kPluggedIn);
    const QStringList said = m_log->texts();
    QCOMPARE(said.size(), 3); // the devices of both lists
    QCOMPARE(said.filter(QStringLiteral("In Loop")).size(), 3);
}

QTEST_MAIN(SorvantaHomeReconciliationTest)
#include "SorvantaHomeReconciliationTest.moc"
