#include "CameraDesk.h"
#include "DeviceInfoPage.h"
#include "FirmwareCamera.h"
#include "HidCommands.h"
#include "LoadingDialog.h"
#include "LocalService.h"
#include "SvtaMessageDialog.h"
#include "SvtaVersionUpdateDialog.h"

#include <memory>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>
#include <QtTest>

using Pages = SvtaPagesView;
using Dialog = SvtaVersionUpdateDialog;

namespace {

constexpr int kTimeoutMs = 30000;
constexpr int kPackets = 120;
const QString kPackage = QStringLiteral("fw-1.0.6.bin");
const QByteArray kSaved = "[SVAA009500550]\nbright=77\n";

} // namespace

/// An update as a user sees it, from the button on the information page to the camera's return,
/// with a real service, network and device nodes.
class FirmwareUpdateTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void updateCompletes();
    void cameraReturnsWithTheOldVersion();
    void cameraNeverReturns();
    void cameraIsUnpluggedDuringTheTransferAndReturns();

private:
    /// Presses "Firmware Update" on the information page and "Update" in the offer.
    [[nodiscard]] bool begin();
    [[nodiscard]] bool isLoading() const { return m_desk->isUp<LoadingDialog>(); }
    [[nodiscard]] bool failureIsTold() const
    {
        return m_desk->isUp<SvtaMessageDialog>() &&
               m_desk->find<SvtaMessageDialog>()->findChild<QLabel*>("labMessage")->text() ==
                   QLatin1String("Updating failed. Please try again.");
    }
    [[nodiscard]] QTimer* limit() const { return m_desk->find<QTimer>("updateTimer"); }
    [[nodiscard]] QString cacheFile(const QString& name) const
    {
        return QFileInfo(m_saved->path()).path() + QLatin1Char('/') + name;
    }
    /// The version on the information page after the camera is opened from its card.
    [[nodiscard]] QString shownVersion();

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<LocalService> m_service;
    std::unique_ptr<FirmwareCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
    QByteArray m_image;
};

void FirmwareUpdateTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    QVERIFY(m_saved->put(kSaved));
    m_service = std::make_unique<LocalService>();
    QVERIFY(m_service->isRunning());
    m_camera = std::make_unique<FirmwareCamera>();
    // Like a real camera: longer than the list needs to notice the removal.
    (*m_camera)->setText("returndelay", "1500");
    m_desk = std::make_unique<CameraDesk>();
    m_image = FirmwareCamera::image(1010 * kPackets - 3);

    updateservice::UpdateOffer offer;
    offer.version = QLatin1String(FirmwareCamera::kNewVersion);
    offer.details = QStringLiteral("Sharper picture");
    offer.url = (*m_service)->addPackage(kPackage, m_image);
    offer.packageSize = updateservice::UpdateOffer::sizeText(m_image.size());
    (*m_service)->setOffer(offer);

    QVERIFY(m_desk->startWith(**m_camera));
    QVERIFY(m_desk->choose("deviceInfoBtn"));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QCOMPARE(m_desk->text("labVersionNumber"), QStringLiteral("V 1.0.5"));
}

void FirmwareUpdateTest::cleanup()
{
    m_desk.reset();
    m_camera.reset();
    m_service.reset();
    m_saved.reset();
}

bool FirmwareUpdateTest::begin()
{
    (*m_camera)->forgetRequests();
    return m_desk->click("btnUpgrade") &&
           QTest::qWaitFor([this] { return m_desk->isUp<Dialog>(); }, kTimeoutMs) &&
           m_desk->answer<Dialog>("btnUpdate") &&
           QTest::qWaitFor([this] { return isLoading(); }, kTimeoutMs);
}

QString FirmwareUpdateTest::shownVersion()
{
    if (!m_desk->waitForCards(1) || !m_desk->open(**m_camera) || !m_desk->choose("deviceInfoBtn"))
        return {};
    return m_desk->text("labVersionNumber");
}

void FirmwareUpdateTest::updateCompletes()
{
    const QString serial = m_desk->text("labSNNumber");
    QVERIFY(begin());
    QVERIFY(limit()->isActive());
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->toast(), QStringLiteral("Update Complete"), kTimeoutMs);
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(!isLoading());
    QVERIFY(!limit()->isActive());
    QCOMPARE(m_desk->visibleDialogs(), 0);

    QCOMPARE(m_camera->received(), std::optional<QByteArray>(m_image));
    QCOMPARE(m_camera->requests(HidCommands::FirmwareStart), 1);
    QCOMPARE(m_camera->requests(HidCommands::FirmwarePacket), kPackets);
    QCOMPARE(m_camera->requests(HidCommands::FirmwareEnd), 1);
    QCOMPARE((*m_camera)->firmware().version, std::string(FirmwareCamera::kNewVersion));
    QVERIFY(!QFile::exists(cacheFile(kPackage))); // nothing needs it any more
    QCOMPARE(m_saved->contents(), kSaved);

    QCOMPARE(shownVersion(), QStringLiteral("V 1.0.6"));
    QCOMPARE(m_desk->text("labSNNumber"), serial);
    // There is no newer version now.
    QVERIFY(m_desk->click("btnUpgrade"));
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->toast(), QStringLiteral("Software is up to date"),
                              kTimeoutMs);
    QCOMPARE(m_saved->contents(), kSaved);
}

void FirmwareUpdateTest::cameraReturnsWithTheOldVersion()
{
    (*m_camera)->fault("old-version");
    QVERIFY(begin());
    QTRY_VERIFY_WITH_TIMEOUT(failureIsTold(), kTimeoutMs);
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(!isLoading());
    QVERIFY(!limit()->isActive());
    QCOMPARE(m_camera->received(), std::optional<QByteArray>(m_image));
    QVERIFY((*m_camera)->stats().connections >= 2);
    QCOMPARE(m_desk->text("labVersionNumber"), QStringLiteral("V 1.0.5"));
    QCOMPARE(m_saved->contents(), kSaved);
}

void FirmwareUpdateTest::cameraNeverReturns()
{
    (*m_camera)->fault("never-return");
    QVERIFY(begin());
    QVERIFY((*m_camera)->waitFor("offbus"));
    QVERIFY(m_desk->waitForCards(0));
    // The camera has left the bus; the program still waits for its return.
    QVERIFY(isLoading());
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    QVERIFY(limit()->isActive());
    limit()->setInterval(100);
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->toast(), QStringLiteral("更新失败，请重试"), kTimeoutMs);
    QVERIFY(!isLoading());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->cardCount(), 0);
    QCOMPARE(m_desk->visibleDialogs(), 0);
    // Long after the time limit.
    (*m_camera)->plug();
    QCOMPARE(shownVersion(), QStringLiteral("V 1.0.6"));
    QCOMPARE(m_saved->contents(), kSaved);
}

void FirmwareUpdateTest::cameraIsUnpluggedDuringTheTransferAndReturns()
{
    QVERIFY(begin());
    QVERIFY(QTest::qWaitFor([this] { return m_camera->requests() > kPackets / 3; }, kTimeoutMs));
    (*m_camera)->unplug();
    QVERIFY(!m_camera->hasAll());
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(isLoading());
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    (*m_camera)->plug();
    QTRY_VERIFY_WITH_TIMEOUT(failureIsTold(), kTimeoutMs);
    QVERIFY(!isLoading());
    QCOMPARE((*m_camera)->firmware().version, std::string(FirmwareCamera::kOldVersion));
    QCOMPARE(m_camera->requests(HidCommands::FirmwareEnd), 0);

    // "Retry" downloads the package again, and this time the transfer succeeds.
    (*m_camera)->forgetRequests();
    QVERIFY(m_desk->answer<SvtaMessageDialog>("btnConfirm"));
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->toast(), QStringLiteral("Update Complete"), kTimeoutMs);
    QCOMPARE(m_service->requestsFor("/packages/" + kPackage.toUtf8()), 2);
    QCOMPARE(m_camera->received(), std::optional<QByteArray>(m_image));
    QCOMPARE(shownVersion(), QStringLiteral("V 1.0.6"));
    QCOMPARE(m_saved->contents(), kSaved);
}

QTEST_MAIN(FirmwareUpdateTest)
#include "FirmwareUpdateTest.moc"
