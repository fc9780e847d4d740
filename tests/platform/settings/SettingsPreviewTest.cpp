#include "CameraDesk.h"
#include "DeviceManager.h"
#include "OverlayImage.h"
#include "PendingTimers.h"
#include "Repaints.h"
#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"

#include <memory>
#include <QProcess>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

constexpr int kDebounceMs = 800;
constexpr int k4kNoticeMs = 2500;
constexpr int kTimeoutMs = 5000;
constexpr int kRestMs = 200;
constexpr int kPictures = 10;

const QString kPicture = QStringLiteral("previewSurface");

const QString kInUse = QStringLiteral("Camera is in use by other app");

} // namespace

/// The preview on the settings page, also when another program uses the camera.
class SettingsPreviewTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensWithItsPicture();
    void buttonSwitchesItOffAndOn();
    void buttonTakesOneClickIn800Milliseconds();
    void previewStaysOffAfterTheInformationPage();
    void opensWithItsPictureAgainAfterLeaving();
    void gridIsHiddenWithThePreview();
    void settingsReachTheCameraWhileThePreviewIsOff();
    void onlyThePictureIsPaintedWhileItPlays();
    void nothingIsPaintedWhileThePreviewIsOff();

    void cameraInUseOpensWithoutPreview();
    void cameraInUseKeepsItsSettingsWorking();
    void cameraInUseSaysByWhichProgram();
    void cameraInUseGivesTheToastAndStaysOff();
    void pictureThatEndsSaysWhy();
    void cameraThatIsFreeAgainStarts();
    void previewDoesNotStartForAnUnpluggedCamera();
    void previewOfACameraThatFreezesCanBeSwitchedOff();

    void noticeOf4kComesWithTheNarrowView_data();
    void noticeOf4kComesWithTheNarrowView();
    void noticeOf4kComesWithIntelligent();
    void noticeOf4kComesOnOpening();
    void noticeOf4kComesOnceForOneOpening();
    void noticeOf4kDisappearsAfterItsTime();
    void missingFormatKeepsTheLastOne();

private:
    [[nodiscard]] TransPrewBtn* button() const { return m_desk->find<TransPrewBtn>(); }
    [[nodiscard]] bool isShownRunning() const
    {
        return button()->isPreviewOpen() && imageStyle(button()).contains("previewopen.svg") &&
               m_desk->find("previewWidget")->styleSheet().isEmpty();
    }
    [[nodiscard]] bool isShownClosed() const
    {
        return !button()->isPreviewOpen() && imageStyle(button()).contains("previewclose.svg") &&
               m_desk->find("previewWidget")->styleSheet().contains("previewLabel.png") &&
               !m_desk->find<TransparentBtn>()->isVisible();
    }
    /// Ends the time in which the button ignores a second click.
    static void passDebounce() { PendingTimers::fire(kDebounceMs); }
    /// Makes the camera report that another program streams in this format.
    void streamElsewhere(int width, int height, bool streaming)
    {
        m_camera->setValue("width", width);
        m_camera->setValue("height", height);
        m_camera->setValue("streamon", streaming ? 1 : 0);
    }
    [[nodiscard]] bool isNoticeUp() const { return m_desk->find("tipWidgetFor4k")->isVisible(); }
    [[nodiscard]] bool switchPreviewOff()
    {
        return m_desk->clickPreview() && m_desk->settle() && m_camera->waitFor("idle");
    }

    /// The widgets that are painted while this many pictures arrive.
    static QStringList paintedDuring(int pictures)
    {
        const Repaints repaints;
        const bool came =
            QTest::qWaitFor([&] { return repaints.of(kPicture) >= pictures; }, kTimeoutMs);
        return came ? repaints.counts().keys() : QStringList();
    }
    /// The widgets that are painted while nothing happens.
    static QStringList paintedAtRest()
    {
        const Repaints repaints;
        QTest::qWait(kRestMs);
        return repaints.counts().keys();
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsPreviewTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", "SVAA009500551"}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
}

void SettingsPreviewTest::cleanup()
{
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsPreviewTest::opensWithItsPicture()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_camera->waitFor("frames>=5"));
    QVERIFY(isShownRunning());
    QVERIFY(button()->isVisible());
    QVERIFY(m_desk->find<TransparentBtn>()->isVisible());
    QCOMPARE(m_desk->toast(), QString());
}

void SettingsPreviewTest::buttonSwitchesItOffAndOn()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    QVERIFY(isShownClosed());
    QVERIFY(button()->isVisible());
    passDebounce();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_camera->waitFor("streaming"));
    QVERIFY(isShownRunning());
    QVERIFY(m_desk->find<TransparentBtn>()->isVisible());
}

void SettingsPreviewTest::buttonTakesOneClickIn800Milliseconds()
{
    QVERIFY(m_desk->open(*m_camera));
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_camera->waitFor("idle"));
    QVERIFY(isShownClosed());
    while (!isShownRunning() && timer.elapsed() < 5000) {
        QTest::qWait(20);
        QVERIFY(m_desk->clickPreview());
    }
    QVERIFY(isShownRunning());
    QVERIFY2(timer.elapsed() >= 780, qPrintable(QString::number(timer.elapsed())));
}

void SettingsPreviewTest::previewStaysOffAfterTheInformationPage()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(isShownClosed());
    QVERIFY(!m_camera->stats().streaming);
    QVERIFY(m_desk->click("btnHeigh"));
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
}

void SettingsPreviewTest::opensWithItsPictureAgainAfterLeaving()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    QVERIFY(m_desk->back());
    QVERIFY(!button()->isVisible());
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(isShownRunning());
    QVERIFY(m_camera->waitFor("streaming"));
}

void SettingsPreviewTest::gridIsHiddenWithThePreview()
{
    QVERIFY(m_desk->open(*m_camera));
    auto* gridButton = m_desk->find<TransparentBtn>();
    QTest::mouseClick(gridButton->findChild<QLabel*>("label"), Qt::LeftButton);
    QVERIFY(m_desk->find<TransparentWidget>()->isVisible());
    QVERIFY(gridButton->findChild<QLabel*>("label")->styleSheet().contains("bandengfeng.svg"));
    QVERIFY(switchPreviewOff());
    QVERIFY(!m_desk->find<TransparentWidget>()->isVisible());
    QVERIFY(gridButton->findChild<QLabel*>("label")->styleSheet().contains("jiugongge.svg"));
}

void SettingsPreviewTest::settingsReachTheCameraWhileThePreviewIsOff()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    QVERIFY(m_desk->click("btnVividMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{130, 128, 140, 120}));
    QVERIFY(m_desk->click("btn60"));
    QCOMPARE(m_camera->value("CameraView"), 60);
    QVERIFY(m_desk->discard());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 128, 128, 128}));
    QCOMPARE(m_camera->value("CameraView"), 120);
}

void SettingsPreviewTest::onlyThePictureIsPaintedWhileItPlays()
{
    QVERIFY(m_desk->open(*m_camera));
    QTRY_COMPARE(paintedDuring(kPictures), QStringList{kPicture});
    // When the preview is switched off and on, its style and window are set again.
    QVERIFY(switchPreviewOff());
    passDebounce();
    QVERIFY(m_desk->clickPreview());
    QTRY_COMPARE(paintedDuring(kPictures), QStringList{kPicture});
}

void SettingsPreviewTest::nothingIsPaintedWhileThePreviewIsOff()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    QTRY_COMPARE(paintedAtRest(), QStringList());
}

void SettingsPreviewTest::cameraInUseOpensWithoutPreview()
{
    m_camera->setValue("PickupSensitivity", 80);
    m_camera->setValue("brightness", 100);
    m_camera->fault("busy");
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(isShownClosed());
    QVERIFY(button()->isVisible());
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QCOMPARE(m_desk->sliderValue("brightSlider"), 100);
}

void SettingsPreviewTest::cameraInUseKeepsItsSettingsWorking()
{
    m_camera->fault("busy");
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QVERIFY(m_desk->click("btnBrightMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), QStringLiteral("Successfully saved"));
    QCOMPARE(m_saved->group(QStringLiteral("SVAA009500551")).value("bright"), 138);
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->discard());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
}

void SettingsPreviewTest::cameraInUseSaysByWhichProgram()
{
    QProcess other;
    other.setStandardOutputFile(QProcess::nullDevice());
    other.start(QStringLiteral("gst-launch-1.0"),
                {"v4l2src", "device=" + m_camera->videoNode(), "!", "fakesink"});
    QVERIFY(other.waitForStarted());
    QVERIFY(m_camera->waitFor("frames>=3"));
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(isShownClosed());
    const auto* reason = m_desk->find<QLabel>("previewReason");
    QTRY_VERIFY(reason->isVisible());
    QVERIFY(reason->text().contains(QLatin1String("in use by gst-launch-1.0")));
    QVERIFY(m_desk->find("stackedWidget")->isEnabled());

    QVERIFY(m_desk->clickPreview());
    QCOMPARE(m_desk->toast(), kInUse);
    QVERIFY(reason->isVisible());
    other.kill();
    QVERIFY(other.waitForFinished());
    QVERIFY(m_camera->waitFor("idle"));
    passDebounce();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(isShownRunning());
    QVERIFY(!reason->isVisible());
    passDebounce();
    QVERIFY(switchPreviewOff());
    QVERIFY(!reason->isVisible());
}

void SettingsPreviewTest::pictureThatEndsSaysWhy()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_camera->waitFor("frames>=5"));
    DeviceManager::instance().stop(); // so that the page stays
    m_camera->unplug();
    QTRY_VERIFY(isShownClosed());
    QCOMPARE(m_desk->text("previewReason"),
             QStringLiteral("The camera was unplugged. Plug it in again."));
    QVERIFY(m_desk->find("previewReason")->isVisible());
    DeviceManager::instance().start();
}

void SettingsPreviewTest::cameraInUseGivesTheToastAndStaysOff()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    passDebounce();
    m_camera->fault("busy");
    QVERIFY(m_desk->clickPreview());
    QCOMPARE(m_desk->toast(), kInUse);
    QVERIFY(isShownClosed());
    QVERIFY(!m_camera->stats().streaming);
    QVERIFY(m_desk->click("btnHeigh"));
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
    QVERIFY(m_desk->setSlider("brightSlider", 90));
    QCOMPARE(m_camera->value("brightness"), 90);
}

void SettingsPreviewTest::cameraThatIsFreeAgainStarts()
{
    m_camera->fault("busy");
    QVERIFY(m_desk->open(*m_camera));
    m_camera->clearFaults();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(isShownRunning());
    QVERIFY(m_camera->waitFor("frames>=5"));
    QCOMPARE(m_desk->toast(), QString());
}

void SettingsPreviewTest::previewDoesNotStartForAnUnpluggedCamera()
{
    // The camera is unplugged, but the program has not noticed it yet.
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    passDebounce();
    m_camera->unplug();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(isShownClosed());
    QVERIFY(m_desk->waitForCards(0));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsPreviewTest::previewOfACameraThatFreezesCanBeSwitchedOff()
{
    QVERIFY(m_desk->open(*m_camera));
    m_camera->fault("frozen");
    QVERIFY(switchPreviewOff());
    QVERIFY(isShownClosed());
    m_camera->clearFaults();
    passDebounce();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(isShownRunning());
}

void SettingsPreviewTest::noticeOf4kComesWithTheNarrowView_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("streaming");
    QTest::addColumn<QByteArray>("view");
    QTest::addColumn<bool>("notice");
    QTest::newRow("4K streaming, narrow") << 3840 << 2160 << true << QByteArray("btn60") << true;
    QTest::newRow("4K streaming, middle") << 3840 << 2160 << true << QByteArray("btn90") << false;
    QTest::newRow("4K streaming, wide") << 3840 << 2160 << true << QByteArray("btn120") << false;
    QTest::newRow("4K not streaming") << 3840 << 2160 << false << QByteArray("btn60") << false;
    QTest::newRow("4096 wide") << 4096 << 2160 << true << QByteArray("btn60") << false;
    QTest::newRow("1080p streaming") << 1920 << 1080 << true << QByteArray("btn60") << false;
    QTest::newRow("turned") << 2160 << 3840 << true << QByteArray("btn60") << false;
}

void SettingsPreviewTest::noticeOf4kComesWithTheNarrowView()
{
    QFETCH(const int, width);
    QFETCH(const int, height);
    QFETCH(const bool, streaming);
    QFETCH(const QByteArray, view);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    streamElsewhere(width, height, streaming);
    QVERIFY(m_desk->click(view));
    QTEST(isNoticeUp(), "notice");
    if (isNoticeUp()) {
        QCOMPARE(m_desk->text("label_4k_tip"),
                 QStringLiteral("Other apps are using 4k images, \"StageFollow AI\" and  “60° FOV\""
                                " not able to use"));
    }
}

void SettingsPreviewTest::noticeOf4kComesWithIntelligent()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    streamElsewhere(3840, 2160, true);
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(isNoticeUp());
    QTRY_VERIFY(!isNoticeUp());
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(!isNoticeUp());
}

void SettingsPreviewTest::noticeOf4kComesOnOpening()
{
    m_camera->fault("busy"); // by the program that streams
    streamElsewhere(3840, 2160, true);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(isNoticeUp());
}

void SettingsPreviewTest::noticeOf4kComesOnceForOneOpening()
{
    m_camera->fault("busy");
    streamElsewhere(3840, 2160, true);
    QVERIFY(m_desk->open(*m_camera));
    QTRY_VERIFY(!isNoticeUp());
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(!isNoticeUp());
}

void SettingsPreviewTest::noticeOf4kDisappearsAfterItsTime()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    streamElsewhere(3840, 2160, true);
    QElapsedTimer timer;
    timer.start();
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(isNoticeUp());
    QTRY_VERIFY(!isNoticeUp());
    QVERIFY2(timer.elapsed() >= k4kNoticeMs - 150, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < k4kNoticeMs + 900, qPrintable(QString::number(timer.elapsed())));
}

void SettingsPreviewTest::missingFormatKeepsTheLastOne()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(switchPreviewOff());
    streamElsewhere(3840, 2160, true);
    QVERIFY(m_desk->click("btn60"));
    QTRY_VERIFY(!isNoticeUp());
    m_camera->fault("status 1 cmd=0x5020");
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(isNoticeUp());
}

QTEST_MAIN(SettingsPreviewTest)
#include "SettingsPreviewTest.moc"
