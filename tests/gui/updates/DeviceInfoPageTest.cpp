#include "DeviceInfoPage.h"
#include "HttpError.h"
#include "LocalService.h"
#include "LogCapture.h"
#include "TestVendor.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

/// Shows the identity of the open camera and asks for newer firmware.
class DeviceInfoPageTest : public QObject
{
    Q_OBJECT

private slots:
    void showsPlaceholdersBeforeACameraIsOpen();
    void showsTheCamera();
    void asksWithModelAndVersion();
    void versionIsInTheBodyUnchanged();
    void emptyVersionIsSentToo();
    void upToDateIsReportedByToast();
    void everyOtherAnswerIsAnOffer_data();
    void everyOtherAnswerIsAnOffer();
    void failureIsReportedByToast_data();
    void failureIsReportedByToast();
    void untrustedServiceReceivesNoRequest();
    void sendsOneRequestAtATime();
    void answerAboutAnEarlierCameraIsDropped_data();
    void answerAboutAnEarlierCameraIsDropped();
    void answerAboutTheSameCameraIsKept();
    void buildWithoutAServiceSaysSoOnItsButton();
    void canBeDestroyedDuringARequest();

private:
    static DeviceWidgetInfo camera(const QString& version = QStringLiteral("1.0.5"))
    {
        DeviceWidgetInfo info;
        info.name = QStringLiteral("NOVA EDGE");
        info.model = QStringLiteral("RQ-T47K");
        info.sn = QStringLiteral("SVAA009500551");
        info.deviceVersion = version;
        return info;
    }
    static QPushButton* button(const DeviceInfoPage& page)
    {
        return page.findChild<QPushButton*>(QStringLiteral("btnUpgrade"));
    }
    static void ask(const DeviceInfoPage& page) { QTest::mouseClick(button(page), Qt::LeftButton); }
    static QString text(const DeviceInfoPage& page, const char* label)
    {
        return page.findChild<QLabel*>(QLatin1String(label))->text();
    }
};

void DeviceInfoPageTest::showsPlaceholdersBeforeACameraIsOpen()
{
    const DeviceInfoPage page;
    QCOMPARE(page.windowTitle(), QStringLiteral("Form"));
    QCOMPARE(text(page, "labProductName"), QStringLiteral("Vexa Cam"));
    QCOMPARE(text(page, "label_2"), QStringLiteral("S/N"));
    QCOMPARE(text(page, "labSNNumber"), QStringLiteral("SVAA009500550"));
    QCOMPARE(text(page, "label_3"), QStringLiteral("Firmware Version"));
    QCOMPARE(text(page, "labVersionNumber"), QStringLiteral("V 1.0.5"));
    QCOMPARE(button(page)->text(), QStringLiteral("Firmware Update"));
    QCOMPARE(button(page)->size(), QSize(200, 42));
}

void DeviceInfoPageTest::showsTheCamera()
{
    DeviceInfoPage page;
    const LogCapture log;
    page.setProductInfo(camera(QStringLiteral("2.0.1")));
    QCOMPARE(text(page, "labProductName"), QStringLiteral("NOVA EDGE"));
    QCOMPARE(text(page, "labSNNumber"), QStringLiteral("SVAA009500551"));
    QCOMPARE(text(page, "labVersionNumber"), QStringLiteral("V 2.0.1"));
    QCOMPARE(page.findChild<QLabel*>(QStringLiteral("label"))->styleSheet(),
             QStringLiteral("border-image: url(:/images/SVCbig.png);"));
    QVERIFY(log.contains(QStringLiteral("mBody = {\"terminalType\":\"RQ-T47K\",\n"
                                        "\"version\":\"2.0.1\",\n}")));
}

void DeviceInfoPageTest::asksWithModelAndVersion()
{
    LocalService service;
    QVERIFY(service.isRunning());
    DeviceInfoPage page;
    page.setProductInfo(camera());
    ask(page);
    QTRY_COMPARE(service.checks(), 1);
    const updateservice::RequestRecord seen = service->requests().constFirst();
    QCOMPARE(seen.method, QByteArray("POST"));
    QCOMPARE(seen.body, QByteArray("{\"terminalType\":\"RQ-T47K\",\n\"version\":\"1.0.5\",\n}"));
}

void DeviceInfoPageTest::versionIsInTheBodyUnchanged()
{
    LocalService service;
    QVERIFY(service.isRunning());
    DeviceInfoPage page;
    page.setProductInfo(camera(QStringLiteral("1\"0")));
    ask(page);
    QTRY_COMPARE(service.checks(), 1);
    QCOMPARE(service->requests().constFirst().body,
             QByteArray("{\"terminalType\":\"RQ-T47K\",\n\"version\":\"1\"0\",\n}"));
}

void DeviceInfoPageTest::emptyVersionIsSentToo()
{
    LocalService service;
    QVERIFY(service.isRunning());
    DeviceInfoPage page;
    page.setProductInfo(camera(QString()));
    QCOMPARE(text(page, "labVersionNumber"), QStringLiteral("V "));
    ask(page);
    QTRY_COMPARE(service.checks(), 1);
    QCOMPARE(service->requests().constFirst().body,
             QByteArray("{\"terminalType\":\"RQ-T47K\",\n\"version\":\"\",\n}"));
}

void DeviceInfoPageTest::upToDateIsReportedByToast()
{
    LocalService service;
    QVERIFY(service.isRunning());
    service.answer("{\"needUpgrade\":false}");
    DeviceInfoPage page;
    const QSignalSpy toast(&page, &DeviceInfoPage::sigShowToast);
    const QSignalSpy offer(&page, &DeviceInfoPage::sigSetDownloadData);
    page.setProductInfo(camera());
    ask(page);
    QTRY_COMPARE(toast.size(), 1);
    QCOMPARE(toast.at(0).at(0).toString(), QStringLiteral("Software is up to date"));
    QTest::qWait(100);
    QVERIFY(offer.isEmpty());
    QCOMPARE(service->requests().size(), 1);
}

void DeviceInfoPageTest::everyOtherAnswerIsAnOffer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<int>("keys");
    QTest::newRow("true") << QByteArray("{\"needUpgrade\":true,\"details\":\"x\"}") << 2;
    QTest::newRow("missing") << QByteArray("{\"details\":\"x\"}") << 1;
    QTest::newRow("zero") << QByteArray("{\"needUpgrade\":0}") << 1;
    QTest::newRow("null") << QByteArray("{\"needUpgrade\":null}") << 1;
    QTest::newRow("no JSON") << QByteArray("<html>") << 0;
    QTest::newRow("cut off") << QByteArray("{\"needUpgrade\":fal") << 0;
    QTest::newRow("an array") << QByteArray("[false]") << 0;
}

void DeviceInfoPageTest::everyOtherAnswerIsAnOffer()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const int, keys);
    LocalService service;
    QVERIFY(service.isRunning());
    service.answer(answer);
    DeviceInfoPage page;
    const QSignalSpy toast(&page, &DeviceInfoPage::sigShowToast);
    const QSignalSpy offer(&page, &DeviceInfoPage::sigSetDownloadData);
    page.setProductInfo(camera());
    ask(page);
    QTRY_COMPARE(offer.size(), 1);
    QCOMPARE(offer.at(0).at(0).toJsonObject().size(), keys);
    QCOMPARE(offer.at(0).at(1).toString(), QStringLiteral("NOVA EDGE"));
    QVERIFY(toast.isEmpty());
}

void DeviceInfoPageTest::failureIsReportedByToast_data()
{
    QTest::addColumn<QString>("fault");
    QTest::newRow("service down") << QString();
    QTest::newRow("not found") << QStringLiteral("status 404");
    QTest::newRow("server error") << QStringLiteral("status 500");
    QTest::newRow("cut off") << QStringLiteral("truncate 5");
    QTest::newRow("too long") << QStringLiteral("huge");
    QTest::newRow("gzip bomb") << QStringLiteral("bomb");
    QTest::newRow("insecure redirect") << QStringLiteral("redirect http");
    QTest::newRow("self-signed") << QStringLiteral("certificate selfsigned");
    QTest::newRow("other host") << QStringLiteral("certificate wronghost");
    QTest::newRow("expired") << QStringLiteral("certificate expired");
}

void DeviceInfoPageTest::failureIsReportedByToast()
{
    QFETCH(const QString, fault);
    LocalService service;
    QVERIFY(service.isRunning());
    if (fault.isEmpty())
        service->stop();
    else
        QVERIFY(service->fault(fault));
    DeviceInfoPage page;
    const QSignalSpy toast(&page, &DeviceInfoPage::sigShowToast);
    const QSignalSpy offer(&page, &DeviceInfoPage::sigSetDownloadData);
    page.setProductInfo(camera());
    ask(page);
    QTRY_COMPARE_WITH_TIMEOUT(toast.size(), 1, 30000);
    QCOMPARE(toast.at(0).at(0).toString(), QStringLiteral("Connecting… Please wait."));
    QTest::qWait(50);
    QCOMPARE(toast.size(), 1);
    QVERIFY(offer.isEmpty());
    QVERIFY(button(page)->isEnabled());
}

void DeviceInfoPageTest::untrustedServiceReceivesNoRequest()
{
    LocalService service;
    QVERIFY(service.isRunning());
    TestVendor::setUpdateCaFile({});
    DeviceInfoPage page;
    const QSignalSpy toast(&page, &DeviceInfoPage::sigShowToast);
    page.setProductInfo(camera());
    ask(page);
    QTRY_COMPARE_WITH_TIMEOUT(toast.size(), 1, 30000);
    QCOMPARE(toast.at(0).at(0).toString(), QStringLiteral("Connecting… Please wait."));
    QCOMPARE(service->requests().size(), 0);
}

void DeviceInfoPageTest::sendsOneRequestAtATime()
{
    LocalService service;
    QVERIFY(service.isRunning());
    QVERIFY(service->fault(QStringLiteral("stall head")));
    DeviceInfoPage page;
    page.setProductInfo(camera());
    ask(page);
    QVERIFY(!button(page)->isEnabled());
    QCOMPARE(button(page)->toolTip(), QStringLiteral("Connecting… Please wait."));
    ask(page);
    QTRY_COMPARE(service.checks(), 1);
    QTest::qWait(100);
    QCOMPARE(service.checks(), 1);
}

void DeviceInfoPageTest::answerAboutAnEarlierCameraIsDropped_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("fault");
    QTest::newRow("offer") << QByteArray("{\"needUpgrade\":true}") << QString();
    QTest::newRow("up to date") << QByteArray("{\"needUpgrade\":false}") << QString();
    QTest::newRow("failure") << QByteArray("{}") << QStringLiteral("status 500");
}

void DeviceInfoPageTest::answerAboutAnEarlierCameraIsDropped()
{
    QFETCH(const QByteArray, answer);
    QFETCH(const QString, fault);
    LocalService service;
    QVERIFY(service.isRunning());
    service.answer(answer);
    if (!fault.isEmpty())
        QVERIFY(service->fault(fault));
    DeviceInfoPage page;
    const QSignalSpy toast(&page, &DeviceInfoPage::sigShowToast);
    const QSignalSpy offer(&page, &DeviceInfoPage::sigSetDownloadData);
    page.setProductInfo(camera());
    const LogCapture log;
    ask(page);
    DeviceWidgetInfo other = camera();
    other.sn = QStringLiteral("SVAA009500552");
    page.setProductInfo(other);
    QVERIFY(button(page)->isEnabled());
    QTRY_VERIFY(log.contains(QString::number(Brivane::Cancelled)));
    QTest::qWait(50);
    QVERIFY(toast.isEmpty());
    QVERIFY(offer.isEmpty());
}

void DeviceInfoPageTest::answerAboutTheSameCameraIsKept()
{
    LocalService service;
    QVERIFY(service.isRunning());
    service.answer("{\"needUpgrade\":true}");
    DeviceInfoPage page;
    const QSignalSpy offer(&page, &DeviceInfoPage::sigSetDownloadData);
    page.setProductInfo(camera());
    ask(page);
    page.setProductInfo(camera());
    QTRY_COMPARE(offer.size(), 1);
}

void DeviceInfoPageTest::buildWithoutAServiceSaysSoOnItsButton()
{
    LocalService service;
    QVERIFY(service.isRunning());
    TestVendor::setUpdateBaseUrl(QStringLiteral("https://update.sorvanta.invalid"));
    DeviceInfoPage page;
    const QSignalSpy toast(&page, &DeviceInfoPage::sigShowToast);
    page.setProductInfo(camera());
    QVERIFY(!button(page)->isEnabled());
    QCOMPARE(button(page)->text(), QStringLiteral("No update service"));
    QVERIFY(button(page)->fontMetrics().horizontalAdvance(button(page)->text()) <
            button(page)->width());
    QCOMPARE(button(page)->toolTip(), QStringLiteral("This build has no update service."));
    QCOMPARE(button(page)->accessibleDescription(), button(page)->toolTip());
    ask(page);
    page.slotNeedUpgrade();
    QTest::qWait(50);
    QVERIFY(toast.isEmpty());
    QCOMPARE(service.checks(), 0);
}

void DeviceInfoPageTest::canBeDestroyedDuringARequest()
{
    LocalService service;
    QVERIFY(service.isRunning());
    QVERIFY(service->fault(QStringLiteral("stall body 3")));
    auto page = std::make_unique<DeviceInfoPage>();
    page->setProductInfo(camera());
    ask(*page);
    QTRY_COMPARE(service.checks(), 1);
    page.reset();
    QTest::qWait(100);
}

QTEST_MAIN(DeviceInfoPageTest)
#include "DeviceInfoPageTest.moc"
