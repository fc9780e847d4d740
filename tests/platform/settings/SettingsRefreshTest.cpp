#include "CameraDesk.h"
#include "SvtaParamNotSaveDialog.h"

#include <memory>
#include <QGuiApplication>
#include <QProcess>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

constexpr int kTimeoutMs = 20000;

/// Another program whose window has the focus while the object exists.
class OtherWindow
{
public:
    OtherWindow() { m_program.start(QStringLiteral(EMPTY_WINDOW), QStringList()); }
    ~OtherWindow()
    {
        m_program.kill();
        m_program.waitForFinished(kTimeoutMs);
    }
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;

    [[nodiscard]] static bool hasFocus()
    {
        return QTest::qWaitFor(
            [] { return QGuiApplication::applicationState() != Qt::ApplicationActive; },
            kTimeoutMs);
    }

private:
    QProcess m_program;
};

} // namespace

/// Another program changes the camera whose settings are shown.
class SettingsRefreshTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void changesOfOthersAreShownAndNotWritten();
    void framingOfOthersIsShown();
    void editsOfOtherValuesStay();
    void valueThatTheCameraTookWithinItsRangeIsNoChange();
    void silentCameraIsAskedTwice();

private:
    /// The user works with another program, does @p change with it and comes back.
    template <typename Change>
    [[nodiscard]] bool changeElsewhere(Change change)
    {
        auto other = std::make_unique<OtherWindow>();
        if (!OtherWindow::hasFocus())
            return false;
        change();
        m_camera->forgetRequests();
        other.reset();
        m_desk->window().activateWindow();
        return QTest::qWaitForWindowActive(&m_desk->window()) && m_desk->settle();
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsRefreshTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(std::initializer_list<PluggedCamera::Option>{
        {"serial", "SVAA009500561"}, {"range-sharpness", "0:150:1:128"}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
}

void SettingsRefreshTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsRefreshTest::changesOfOthersAreShownAndNotWritten()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(changeElsewhere([this] {
        m_camera->setValue("autoFrameSwicth", 0);
        m_camera->setValue("CameraView", 90);
        m_camera->setValue("HorizontalMirror", 1);
        m_camera->setValue("PickupSensitivity", 80);
        m_camera->setValue("brightness", 150);
    }));
    QTRY_VERIFY(m_desk->isChecked("btn90"));
    QVERIFY(m_desk->isChecked("btnHorizontalMirror"));
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(!m_desk->isChecked("btnIntelligent"));
    QCOMPARE(m_desk->sliderValues().first(), 150);
    QCOMPARE(writesTo(*m_camera), QStringList());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage)); // there is nothing to save
    QCOMPARE(m_camera->value("CameraView"), 90);
    QCOMPARE(m_camera->value("brightness"), 150);
}

void SettingsRefreshTest::framingOfOthersIsShown()
{
    m_camera->setValue("autoFrameSwicth", 0);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(!m_desk->isChecked("btnIntelligent"));
    QVERIFY(changeElsewhere([this] {
        m_camera->setValue("autoFrameSwicth", 1);
        m_camera->setValue("autoFrameMode", 1);
    }));
    QTRY_VERIFY(m_desk->isChecked("btnIntelligent"));
    QVERIFY(m_desk->isChecked("rbtnAutoFraming"));
    QVERIFY(m_desk->isChecked("rbtnDivisionMaster"));
    QCOMPARE(writesTo(*m_camera), QStringList());
}

void SettingsRefreshTest::editsOfOtherValuesStay()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->setSlider("contrastSlider", 160));
    const int contrast = m_desk->sliderValue("contrastSlider");
    QVERIFY(changeElsewhere([this] { m_camera->setValue("HorizontalMirror", 1); }));
    QTRY_VERIFY(m_desk->isChecked("btnHorizontalMirror"));
    QCOMPARE(m_desk->sliderValue("contrastSlider"), contrast);
    QVERIFY(m_desk->discard()); // asks about the contrast
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
}

void SettingsRefreshTest::valueThatTheCameraTookWithinItsRangeIsNoChange()
{
    QVERIFY(m_saved->put("[SVAA009500561]\nbright=128\ncontrast=128\nsaturation=128\n"
                         "sharpness=170\nimagemode=3\n"));
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_camera->value("sharpness"), 150);
    QVERIFY(changeElsewhere([] {}));
    QCOMPARE(m_desk->sliderValue("sharpnessSlider"), 170);
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsRefreshTest::silentCameraIsAskedTwice()
{
    QVERIFY(m_desk->open(*m_camera));
    const QList<int> before = m_desk->sliderValues();
    QVERIFY(changeElsewhere([this] { m_camera->addFault("readerror times=1000"); }));
    QTRY_COMPARE(m_camera->requestCount(), std::size_t{2});
    QCOMPARE(m_desk->sliderValues(), before);
    QVERIFY(m_desk->isChecked("btn120"));
}

QTEST_MAIN(SettingsRefreshTest)

#include "SettingsRefreshTest.moc"
