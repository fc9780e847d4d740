#include "CameraHandle.h"
#include "HidCommands.h"
#include "LogCapture.h"
#include "PendingTimers.h"
#include "ShownHome.h"
#include "SvtaDeviceWidget.h"

#include <memory>
#include <QElapsedTimer>
#include <QLabel>
#include <QRegularExpression>
#include <QtTest>

using Pages = SvtaPagesView;

/// Opening a camera from the list: the requests to it, and the texts of its pages.
class SorvantaHomeDeviceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickOnAConnectedCameraOpensItsSettings();
    void clickOnAFailedCameraOpensItsInformation();
    void openingACameraAsksWhoItIs();
    void informationIsAskedForAnew();
    void cameraThatCannotBeAskedShowsNothing();
    void markupFromACameraIsShownAsItIs();
    void identityIsLogged();
    void silentCameraDoesNotHoldTheWindowUp();
    void returningCameraIsOpenedAnew();
    void noHandleStaysOpenBehindACommand();

private:
    [[nodiscard]] QString text(const char* label) const
    {
        return m_home->find<QLabel>(label)->text();
    }
    void clickCard() const { QTest::mouseClick(m_home->find<SvtaDeviceWidget>(), Qt::LeftButton); }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeDeviceTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    m_home->cameras().setVersion(QByteArray::fromHex("01020304"));
    m_home->cameras().setSerialNumber("SN-0815");
}

void SorvantaHomeDeviceTest::cleanup()
{
    QCOMPARE(m_home->cameras().hidapi().misuse(), QStringList());
    m_home.reset();
    m_log.reset();
}

void SorvantaHomeDeviceTest::clickOnAConnectedCameraOpensItsSettings()
{
    QVERIFY(m_home->passStart());
    m_log->clear();
    clickCard();
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
    QCOMPARE(text("labCurrentPage"), QStringLiteral("NOVA EDGE"));
    QStringList said = m_log->texts();
    const int first = said.indexOf(QStringLiteral("showDeviceSettingPages"));
    const int before = said.indexOf(QStringLiteral("showView(SvtaPagesView::SettingPage) befor"));
    const int after = said.indexOf(QStringLiteral("showView(SvtaPagesView::SettingPage) after"));
    QVERIFY(first >= 0 && first < before && before < after);
}

void SorvantaHomeDeviceTest::clickOnAFailedCameraOpensItsInformation()
{
    m_home->cameras().hidapi().respondTo(HidCommands::ConnectionProbe, {QByteArray(1, '\1')});
    QVERIFY(m_home->passStart());
    clickCard();
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    QCOMPARE(text("labProductName"), QStringLiteral("NOVA EDGE"));
    m_home->click("backBtn");
    QCOMPARE(m_home->page(), int(Pages::HomePage));
}

void SorvantaHomeDeviceTest::openingACameraAsksWhoItIs()
{
    QVERIFY(m_home->openSettings());
    QVERIFY(text("labVersionNumber").contains(QLatin1String("4.3.2.1")) ||
            text("labVersionNumber").contains(QLatin1String("1.2.3.4")));
    QCOMPARE(text("labSNNumber"), QStringLiteral("SN-0815"));
    QVERIFY(m_log->contains(QStringLiteral("sn \"SN-0815\"")));
    QCOMPARE(m_log->texts().filter(QRegularExpression(QStringLiteral("^vsc = "))).size(), 1);
    QCOMPARE(CameraHandle::instance().currentDevice().sn, QStringLiteral("SN-0815"));
    QCOMPARE(CameraHandle::instance().currentDevice().hidPath, ScriptedCameras::hidPath(0));
}

void SorvantaHomeDeviceTest::informationIsAskedForAnew()
{
    QVERIFY(m_home->openSettings());
    m_home->cameras().setSerialNumber("SN-4711");
    m_log->clear();
    m_home->click("deviceInfoBtn");
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    QCOMPARE(text("labSNNumber"), QStringLiteral("SN-4711"));
    QVERIFY(m_log->contains(QStringLiteral("sn \"SN-4711\"")));
}

void SorvantaHomeDeviceTest::cameraThatCannotBeAskedShowsNothing()
{
    m_home->cameras().refuse(0);
    QVERIFY(m_home->openSettings());
    QCOMPARE(text("labSNNumber"), QString());
    QVERIFY(m_log->contains(QStringLiteral("sn \"\"")));
}

void SorvantaHomeDeviceTest::markupFromACameraIsShownAsItIs()
{
    m_home->cameras().setSerialNumber("<b>1</b>");
    DeviceWidgetInfo camera = ShownHome::connectedCamera();
    camera.name = QStringLiteral("<i>name</i>");
    QVERIFY(m_home->openSettings(camera));
    QCOMPARE(text("labSNNumber"), QStringLiteral("<b>1</b>"));
    QCOMPARE(text("labProductName"), camera.name);
    for (const char* label : {"labSNNumber", "labVersionNumber", "labProductName"})
        QCOMPARE(m_home->find<QLabel>(label)->textFormat(), Qt::PlainText);
}

void SorvantaHomeDeviceTest::identityIsLogged()
{
    m_home->cameras().hidapi().setStrings({L"Maker", L"Product", L"77", {{1, L"Index"}}});
    QVERIFY(m_home->openSettings());
    m_home->cameras().hidapi().queueAnswer(QByteArray::fromHex("0a0b0c0d0e"));
    m_log->clear();
    m_home->window().getHidInfo();
    const QStringList expected{
        QStringLiteral("Manufacturer String: Maker"), QStringLiteral("Product String: Product"),
        QStringLiteral("Serial Number String: (55) 77"), QStringLiteral("Indexed String 1: Index"),
        QStringLiteral("buf[0]: 10\n")};
    for (const QString& line : expected)
        QVERIFY2(m_log->contains(line), qPrintable(line + m_log->texts().join('|')));
}

void SorvantaHomeDeviceTest::silentCameraDoesNotHoldTheWindowUp()
{
    QVERIFY(m_home->openSettings());
    ScriptedHidapi& hidapi = m_home->cameras().hidapi();
    hidapi.forgetCalls();
    m_home->window().getHidInfo();
    // The scripted library does not wait; the sum of the time-outs is the delay of a silent camera.
    int waited = 0;
    const QRegularExpression timedRead(QStringLiteral("^hid_read_timeout\\(.*, (-?\\d+)\\)$"));
    for (const QString& call : hidapi.calls()) {
        QVERIFY2(!call.startsWith(QLatin1String("hid_read(")), qPrintable(call));
        const auto match = timedRead.match(call);
        if (!match.hasMatch())
            continue;
        QVERIFY2(match.captured(1).toInt() >= 0, qPrintable(call));
        waited += match.captured(1).toInt();
    }
    QVERIFY2(waited <= 200, qPrintable(QString::number(waited)));
    QCOMPARE(hidapi.openHandles(), 1); // the camera's own link
}

void SorvantaHomeDeviceTest::returningCameraIsOpenedAnew()
{
    QVERIFY(m_home->openSettings());
    ScriptedHidapi& hidapi = m_home->cameras().hidapi();
    hidapi.forgetCalls();
    m_log->clear();
    m_home->window().slotInitCamera(0);
    QVERIFY(m_log->contains(QStringLiteral("init m_pCamera")));
    const QString open = QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(0));
    QCOMPARE(hidapi.calls().count(open), 2); // identity, then the link
    QCOMPARE(hidapi.openHandles(), 1);
}

void SorvantaHomeDeviceTest::noHandleStaysOpenBehindACommand()
{
    QVERIFY(m_home->passStart());
    clickCard();
    QVERIFY(PendingTimers::fire(ShownHome::kPreviewDelayMs));
    QCOMPARE(m_home->cameras().hidapi().openHandles(), 1);
    QCOMPARE(m_home->cameras().hidapi().openEnumerations(), 0);
}

QTEST_MAIN(SorvantaHomeDeviceTest)
#include "SorvantaHomeDeviceTest.moc"
