#include "CacheDirectory.h"
#include "DeviceHomePage.h"
#include "DeviceInfoPage.h"
#include "HeldFile.h"
#include "HidCommands.h"
#include "HidFrame.h"
#include "IDeviceNotify.h"
#include "LoadingDialog.h"
#include "LocalService.h"
#include "LogCapture.h"
#include "MaskedDialog.h"
#include "ShownHome.h"
#include "SvtaDeviceWidget.h"
#include "SvtaMessageDialog.h"
#include "SvtaVersionUpdateDialog.h"

#include <memory>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QThreadPool>
#include <QtTest>

using Pages = SvtaPagesView;
using Dialog = SvtaVersionUpdateDialog;

namespace {

constexpr int kInstallLimitMs = 240000;
const QByteArray kSerial = "SVAA009500551";

QByteArray imageOf(int packets)
{
    QByteArray image;
    for (int i = 0; i < packets * 1010 - 7; ++i)
        image += static_cast<char>(i * 31 + i / 1010);
    return image;
}

/// How often the next package is found to be held by another program.
int s_looksHeld = 0;

std::uint16_t commandOf(const QByteArray& frame)
{
    const auto low = static_cast<std::uint8_t>(frame.at(3));
    const auto high = static_cast<std::uint8_t>(frame.at(4));
    return static_cast<std::uint16_t>(low | (high << 8));
}

} // namespace

/// In place of the platform's: the linker prefers it.
bool HeldFile::isHeld(const QString&)
{
    if (s_looksHeld == 0)
        return false;
    --s_looksHeld;
    return true;
}

/// The installation of firmware, from the end of the download to the end of the transfer.
class SorvantaHomeFirmwareTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void imageIsWrittenToTheCamera();
    void returningCameraEndsTheInstallation();
    void cameraThatCannotBeOpenedEndsItAtOnce();
    void damagedPackageIsNotSent_data();
    void damagedPackageIsNotSent();
    void packageThatIsHeldIsWaitedFor();
    void packageThatIsHeldIsNotWaitedForOnAnotherPage();
    void failedTransferWaitsForTheLimit();
    void loadingDialogCannotBeClosedByTheUser();
    void cameraBeingWrittenIsNotAsked();
    void cameraBeingWrittenIsNotOpened();
    void otherCameraDoesNotEndTheInstallation();
    void cameraThatReturnsDuringTheTransferIsFree();
    void secondInstallationIsRefusedDuringTheFirst();
    void quitLetsTheTransferEnd();
    void destructionLetsTheTransferEnd();
    void packageIsRemovedWhenTheUserGivesUp();
    void packageIsRemovedForAnotherOne();
    void applicationOfferWaitsForTheEndOfTheUpdate();
    void unplugStopsTheDownload();
    void developersFileIsWrittenWithoutADialog();
    void withoutADevelopersFileNothingHappens();

private:
    [[nodiscard]] ScriptedHidapi& hidapi() const { return m_home->cameras().hidapi(); }
    /// Downloads a package of the test from the information page.
    void install(const QByteArray& image);
    void startDownload(const QByteArray& image);
    /// How many frames with this command the camera has received.
    [[nodiscard]] QList<QByteArray> received(std::uint16_t command) const
    {
        QList<QByteArray> frames;
        for (const QByteArray& frame : hidapi().writtenFrames()) {
            if (commandOf(frame) == command)
                frames.append(frame);
        }
        return frames;
    }
    [[nodiscard]] QByteArray receivedImage() const
    {
        QByteArray image;
        for (const QByteArray& frame : received(HidCommands::FirmwarePacket)) {
            const int low = static_cast<std::uint8_t>(frame.at(6));
            const int high = static_cast<std::uint8_t>(frame.at(7));
            image += frame.mid(int(HidFrame::kHeaderSize), low | (high << 8));
        }
        return image;
    }
    [[nodiscard]] bool transferEnds() const
    {
        return QTest::qWaitFor([this] { return !received(HidCommands::FirmwareEnd).isEmpty(); },
                               20000);
    }
    /// Waits until the window knows that the transfer has ended, which is after its last handle is
    /// closed.
    static void passEndOfTransfer()
    {
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QTimer* limit() const
    {
        return m_home->window().findChild<QTimer*>(QStringLiteral("updateTimer"));
    }
    void rebuildList(int status) const
    {
        m_home->find<DeviceHomePage>()->slotUpdateCameraList(ScriptedCameras::videoDevices(),
                                                             status);
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<CacheDirectory> m_cache;
    std::unique_ptr<LocalService> m_service;
    std::unique_ptr<ShownHome> m_home;
};

void SorvantaHomeFirmwareTest::init()
{
    m_log = std::make_unique<LogCapture>();
    m_cache = std::make_unique<CacheDirectory>();
    m_service = std::make_unique<LocalService>();
    QVERIFY(m_service->isRunning());
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    m_home->cameras().setVersion(QByteArray::fromHex("010005"));
    m_home->cameras().setSerialNumber(kSerial);
    for (const std::uint16_t command :
         {HidCommands::FirmwareStart, HidCommands::FirmwarePacket, HidCommands::FirmwareEnd})
        hidapi().respondTo(command, {});
    QVERIFY(m_home->passStart());
    QVERIFY(m_home->openSettings());
    m_home->click("deviceInfoBtn");
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
}

void SorvantaHomeFirmwareTest::cleanup()
{
    if (m_home)
        QCOMPARE(hidapi().misuse(), QStringList());
    m_home.reset();
    m_service.reset();
    m_cache.reset();
    m_log.reset();
}

void SorvantaHomeFirmwareTest::install(const QByteArray& image)
{
    startDownload(image);
    QTRY_VERIFY(m_home->find<LoadingDialog>()->isVisible());
}

void SorvantaHomeFirmwareTest::startDownload(const QByteArray& image)
{
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), image),
                                         QStringLiteral("NOVA EDGE"));
    hidapi().forgetCalls();
    QTest::mouseClick(m_home->find<Dialog>()->findChild<QPushButton*>(QStringLiteral("btnUpdate")),
                      Qt::LeftButton);
}

void SorvantaHomeFirmwareTest::imageIsWrittenToTheCamera()
{
    const QByteArray image = imageOf(5);
    install(image);
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    QCOMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::OfferPage));
    QVERIFY(limit()->isActive());
    QCOMPARE(limit()->interval(), kInstallLimitMs);
    const auto* mask = m_home->window().findChild<MaskForm*>({}, Qt::FindDirectChildrenOnly);
    QVERIFY(mask->isVisible());
    QCOMPARE(dialogOver(mask), static_cast<const QDialog*>(m_home->find<LoadingDialog>()));
    QCOMPARE(m_home->find<LoadingDialog>()->size(), QSize(278, 178));

    QVERIFY(transferEnds());
    QCOMPARE(received(HidCommands::FirmwareStart).size(), 1);
    QCOMPARE(received(HidCommands::FirmwarePacket).size(), 5);
    QCOMPARE(receivedImage(), image);
    QVERIFY(m_log->contains(
        QStringLiteral("slotCameraUpdateFile \"%1\"").arg(m_cache->filePath("fw.bin"))));
    // No handle stays open, because that would keep the node name of the restarting camera.
    QTRY_COMPARE(hidapi().openHandles(), 0);
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(limit()->isActive());
}

void SorvantaHomeFirmwareTest::returningCameraEndsTheInstallation()
{
    install(imageOf(2));
    QVERIFY(transferEnds());
    passEndOfTransfer();
    m_home->cameras().plugIn(0);
    rebuildList(DeviceRemoved);
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    m_home->cameras().setVersion(QByteArray::fromHex("010006"));
    m_home->cameras().plugIn(1);
    rebuildList(DevicePluggedIn);
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(!limit()->isActive());
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QCOMPARE(m_home->toast(), QStringLiteral("Update Complete"));
    QCOMPARE(m_cache->files(), QStringList());
}

void SorvantaHomeFirmwareTest::cameraThatCannotBeOpenedEndsItAtOnce()
{
    m_home->cameras().refuse(0);
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), imageOf(2)),
                                         QStringLiteral("NOVA EDGE"));
    hidapi().forgetCalls();
    QSignalSpy hidden(&m_home->window(), &SorvantaHome::sigHideLoadingPage);
    m_home->find<Dialog>()->slotUpdate();
    QTRY_COMPARE(hidden.size(), 1);
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(!limit()->isActive());
    QVERIFY(!m_home->find<SvtaMessageDialog>()->isVisible());
    QCOMPARE(m_home->page(), int(Pages::InfoPage));
    QVERIFY(m_log->contains(QStringLiteral("无法打开当前设备")));
    QVERIFY(hidapi().writtenFrames().isEmpty());
}

void SorvantaHomeFirmwareTest::damagedPackageIsNotSent_data()
{
    QTest::addColumn<QByteArray>("package");
    QTest::addColumn<int>(
        "left"); // bytes of the package that are still there afterwards; -1: no file
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("too large") << QByteArray(8 * 1024 * 1024 + 1, 'x') << 8 * 1024 * 1024 + 1;
    QTest::newRow("shorter") << imageOf(2) << 1010;
    QTest::newRow("not readable") << imageOf(2) << -1;
}

void SorvantaHomeFirmwareTest::damagedPackageIsNotSent()
{
    QFETCH(const QByteArray, package);
    QFETCH(const int, left);
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), package),
                                         QStringLiteral("NOVA EDGE"));
    hidapi().forgetCalls();
    const QString path = m_cache->filePath(QStringLiteral("fw.bin"));
    // On the networking library's thread, before the window hears of the package.
    const auto damaged = connect(
        m_home->find<Dialog>(), &Dialog::sigDownloadSuccessed, m_home->find<Dialog>(),
        [path, left] {
            if (left < 0)
                QFile::remove(path);
            else
                QFile::resize(path, left);
        },
        Qt::DirectConnection);
    m_home->find<Dialog>()->slotUpdate();
    QTRY_VERIFY_WITH_TIMEOUT(m_home->find<SvtaMessageDialog>()->isVisible(), 30000);
    QCOMPARE(
        m_home->find<SvtaMessageDialog>()->findChild<QLabel*>(QStringLiteral("labMessage"))->text(),
        QStringLiteral("Updating failed. Please try again."));
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(!limit()->isActive());
    QCOMPARE(hidapi().calls(), QStringList());
    QCOMPARE(hidapi().openHandles(), 1); // the link of the pages
    disconnect(damaged);
}

/// As by a virus scanner. The window works meanwhile.
void SorvantaHomeFirmwareTest::packageThatIsHeldIsWaitedFor()
{
    const QByteArray image = imageOf(3);
    s_looksHeld = 3;
    install(image);
    QCOMPARE(s_looksHeld, 0);
    QVERIFY(transferEnds());
    QCOMPARE(receivedImage(), image);
}

void SorvantaHomeFirmwareTest::packageThatIsHeldIsNotWaitedForOnAnotherPage()
{
    s_looksHeld = 3;
    QSignalSpy succeeded(m_home->find<Dialog>(), &Dialog::sigDownloadSuccessed);
    startDownload(imageOf(3));
    QTRY_COMPARE(succeeded.count(), 1);
    m_home->window().showView(Pages::HomePage);
    QTRY_COMPARE(s_looksHeld, 0);
    QTRY_VERIFY(
        m_log->texts().contains(QStringLiteral("the package stays in the cache directory")));
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(received(HidCommands::FirmwareStart).isEmpty());
}

void SorvantaHomeFirmwareTest::failedTransferWaitsForTheLimit()
{
    ScriptedReply refusal;
    refusal.status = 1;
    hidapi().respondTo(HidCommands::FirmwareStart, refusal);
    install(imageOf(2));
    QTRY_COMPARE(received(HidCommands::FirmwareStart).size(), 3);
    // The link to the camera is open again.
    QTRY_COMPARE(hidapi().openHandles(), 1);
    QVERIFY(received(HidCommands::FirmwareEnd).isEmpty());
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    QCOMPARE(m_home->page(), int(Pages::InfoPage));

    limit()->setInterval(50);
    QTRY_VERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QCOMPARE(m_home->toast(), QStringLiteral("更新失败，请重试"));
    QVERIFY(m_log->contains(QStringLiteral("SorvantaHome::slotTimeout 1284 超时了")));
    QCOMPARE(m_cache->files(), QStringList());
}

void SorvantaHomeFirmwareTest::loadingDialogCannotBeClosedByTheUser()
{
    install(imageOf(2));
    m_home->find<LoadingDialog>()->close();
    QTest::keyClick(m_home->find<LoadingDialog>(), Qt::Key_Escape);
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(transferEnds());
}

void SorvantaHomeFirmwareTest::cameraBeingWrittenIsNotAsked()
{
    m_home->cameras().plugIn(2);
    rebuildList(DevicePluggedIn);
    install(imageOf(200));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    const QString busy = QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(0));
    const QString other = QStringLiteral("hid_open_path(%1)").arg(ScriptedCameras::hidPath(1));
    const int otherBefore = hidapi().calls().count(other);
    QCOMPARE(hidapi().calls().count(busy), 1); // by the transfer
    m_home->cameras().setSerialNumber("SVAA009500552");
    rebuildList(DevicePluggedIn);
    m_home->cameras().plugIn(3);
    rebuildList(DevicePluggedIn);
    QVERIFY(received(HidCommands::FirmwareEnd).isEmpty());
    QCOMPARE(hidapi().calls().count(busy), 1);
    QVERIFY(hidapi().calls().count(other) > otherBefore);
    // It keeps its last state.
    for (const SvtaDeviceWidget* card : m_home->window().findChildren<SvtaDeviceWidget*>()) {
        QCOMPARE(card->findChild<QLabel*>(QStringLiteral("labStatus"))->text(),
                 QStringLiteral("Connected"));
    }
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(transferEnds());
    QCOMPARE(receivedImage(), imageOf(200));
}

void SorvantaHomeFirmwareTest::cameraBeingWrittenIsNotOpened()
{
    install(imageOf(200));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    limit()->setInterval(1);
    QTRY_COMPARE(m_home->page(), int(Pages::HomePage));
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QCOMPARE(m_home->toast(),
             QStringLiteral("The installation process will take a long time. Please "
                            "wait."));
    emit m_home->find<DeviceHomePage>()->sigShowDeviceInfo(ShownHome::failedCamera());
    QCOMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY(received(HidCommands::FirmwareVersion).isEmpty());
    QVERIFY(transferEnds());
    QCOMPARE(receivedImage(), imageOf(200));
    passEndOfTransfer();
    QCOMPARE(hidapi().openHandles(), 0);
    m_home->window().showDeviceSettingPages(ShownHome::connectedCamera());
    QCOMPARE(m_home->page(), int(Pages::SettingPage));
}

void SorvantaHomeFirmwareTest::otherCameraDoesNotEndTheInstallation()
{
    install(imageOf(100));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    m_home->cameras().setSerialNumber("SVAA009500552");
    m_home->cameras().plugIn(2);
    rebuildList(DevicePluggedIn);
    QVERIFY(received(HidCommands::FirmwareEnd).isEmpty());
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(limit()->isActive());
    QVERIFY(transferEnds());
    QCOMPARE(receivedImage(), imageOf(100));
}

void SorvantaHomeFirmwareTest::cameraThatReturnsDuringTheTransferIsFree()
{
    install(imageOf(200));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    m_home->cameras().plugIn(0);
    rebuildList(DeviceRemoved);
    QVERIFY(m_home->find<LoadingDialog>()->isVisible());
    m_home->cameras().plugIn(1);
    rebuildList(DevicePluggedIn);
    QVERIFY(!received(HidCommands::FirmwareVersion).isEmpty());
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(m_home->find<SvtaMessageDialog>()->isVisible()); // the old version
}

void SorvantaHomeFirmwareTest::secondInstallationIsRefusedDuringTheFirst()
{
    install(imageOf(200));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    m_home->find<LoadingDialog>()->hide();
    m_home->window().slotDownloadSuccessed();
    QCOMPARE(m_home->toast(),
             QStringLiteral("The installation process will take a long time. Please "
                            "wait."));
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(transferEnds());
    QCOMPARE(received(HidCommands::FirmwareStart).size(), 1);
}

void SorvantaHomeFirmwareTest::quitLetsTheTransferEnd()
{
    install(imageOf(100));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    bool leftAtOnce = false;
    QTimer::singleShot(0, this, [&] {
        leftAtOnce = received(HidCommands::FirmwareEnd).isEmpty();
        for (const QWidget* window : QApplication::topLevelWidgets())
            leftAtOnce = leftAtOnce && !window->isVisible();
    });
    m_home->window().finishTransfer();
    QVERIFY(leftAtOnce);
    QCOMPARE(receivedImage(), imageOf(100));
    QCOMPARE(received(HidCommands::FirmwareEnd).size(), 1);
    QCOMPARE(hidapi().openHandles(), 0);
}

void SorvantaHomeFirmwareTest::destructionLetsTheTransferEnd()
{
    install(imageOf(100));
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    m_log->clear();
    m_home.reset();
    // Its last frame is logged before the window is gone.
    QVERIFY(!m_log->texts().filter(QStringLiteral("packNUm:100")).isEmpty());
}

void SorvantaHomeFirmwareTest::packageIsRemovedWhenTheUserGivesUp()
{
    install(imageOf(2));
    QVERIFY(transferEnds());
    passEndOfTransfer();
    QCOMPARE(m_cache->files(), QStringList("fw.bin")); // until the camera is verified
    m_home->cameras().plugIn(0);
    rebuildList(DeviceRemoved);
    m_home->cameras().plugIn(1);
    rebuildList(DevicePluggedIn);
    QVERIFY(m_home->find<SvtaMessageDialog>()->isVisible()); // the old version
    m_home->find<SvtaMessageDialog>()->close();
    QCOMPARE(m_cache->files(), QStringList());
}

void SorvantaHomeFirmwareTest::packageIsRemovedForAnotherOne()
{
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), imageOf(2)),
                                         QStringLiteral("NOVA EDGE"));
    m_home->window().showView(Pages::SettingPage); // nothing is installed from here
    m_home->find<Dialog>()->slotUpdate();
    QTRY_COMPARE(m_cache->files(), QStringList("fw.bin"));
    QTRY_COMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::OfferPage));
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw2.bin"), imageOf(2)),
                                         QStringLiteral("NOVA EDGE"));
    m_home->find<Dialog>()->slotUpdate();
    QTRY_COMPARE(m_cache->files(), QStringList("fw2.bin"));
}

void SorvantaHomeFirmwareTest::applicationOfferWaitsForTheEndOfTheUpdate()
{
    const QByteArray image = imageOf(60);
    QVERIFY((*m_service)->fault(QStringLiteral("slow 60000")));
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), image),
                                         QStringLiteral("NOVA EDGE"));
    QSignalSpy progress(m_home->find<Dialog>(), &Dialog::sigSetProgress);
    m_home->find<Dialog>()->slotUpdate();
    QTRY_VERIFY(!progress.isEmpty());
    m_home->window().slotSetUpdateData(
        m_service->offer(QStringLiteral("setup.exe"), "MZ INSTALLER"));
    const auto* title = m_home->find<Dialog>()->findChild<QLabel*>(QStringLiteral("labTitle"));
    QCOMPARE(title->text(), QStringLiteral("NOVA EDGE"));

    QTRY_VERIFY(m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    QTRY_VERIFY(!received(HidCommands::FirmwarePacket).isEmpty());
    limit()->setInterval(1); // the list is shown while the camera is still being written
    QTRY_COMPARE(m_home->page(), int(Pages::HomePage));
    QVERIFY(received(HidCommands::FirmwareEnd).isEmpty());
    QVERIFY(!m_home->find<Dialog>()->isVisible());
    QVERIFY(transferEnds());
    QCOMPARE(receivedImage(), image);
    QTRY_VERIFY(m_home->find<Dialog>()->isVisible());
    QCOMPARE(title->text(), QStringLiteral("MarvikTools V" MARVIK_VERSION));
}

void SorvantaHomeFirmwareTest::unplugStopsTheDownload()
{
    m_home->window().slotSetDownloadData(m_service->offer(QStringLiteral("fw.bin"), imageOf(100)),
                                         QStringLiteral("NOVA EDGE"));
    QVERIFY((*m_service)->fault(QStringLiteral("slow 20000")));
    m_home->find<Dialog>()->slotUpdate();
    const auto* progress = m_home->find<Dialog>()->findChild<QProgressBar*>();
    QTRY_VERIFY(progress->value() > 0);
    QCOMPARE(m_home->find<Dialog>()->currentPage(), int(Dialog::DownloadPage));
    m_home->cameras().plugIn(0);
    rebuildList(DeviceRemoved);
    QTRY_COMPARE(m_home->page(), int(Pages::HomePage));
    QTRY_VERIFY(!m_home->find<Dialog>()->isVisible());
    QVERIFY(m_home->find<Dialog>()->isStopDownload());
}

void SorvantaHomeFirmwareTest::developersFileIsWrittenWithoutADialog()
{
    const QByteArray image = imageOf(3);
    QVERIFY(m_cache->put(QStringLiteral("own.bin"), image));
    {
        QSettings settings(QSettings::IniFormat, QSettings::UserScope,
                           QStringLiteral("MarvikTools"), QStringLiteral("MarvikTools"));
        settings.setValue(QStringLiteral("development/firmwareFile"),
                          m_cache->filePath(QStringLiteral("own.bin")));
    }
    hidapi().forgetCalls();
    emit m_home->find<DeviceInfoPage>()->sigUpgrade();
    QVERIFY(transferEnds());
    QCOMPARE(receivedImage(), image);
    QVERIFY(!m_home->find<LoadingDialog>()->isVisible());
    QVERIFY(!limit()->isActive());
    QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("MarvikTools"),
              QStringLiteral("MarvikTools"))
        .clear();
}

void SorvantaHomeFirmwareTest::withoutADevelopersFileNothingHappens()
{
    hidapi().forgetCalls();
    emit m_home->find<DeviceInfoPage>()->sigUpgrade();
    QTest::qWait(100);
    QVERIFY(hidapi().calls().isEmpty());
}

QTEST_MAIN(SorvantaHomeFirmwareTest)
#include "SorvantaHomeFirmwareTest.moc"
