#include "CameraDesk.h"
#include "SvtaParamNotSaveDialog.h"

#include <array>
#include <memory>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

const QString kSaveFailed = QStringLiteral("Save failed ， please try it again");

} // namespace

/// Values that the camera does not report: refused and lost reads, a picture that cannot be opened.
class SettingsUnknownTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void defaultsEndTheMarks();
    void switchedFramingEndsTheMarkOfTheView();
    void pictureThatIsNotKnownIsNotSaved();
    void previewButtonFillsThePageOfACameraThatCouldNotBeOpened();

private:
    /// The camera refuses these read commands.
    void refuse(std::initializer_list<const char*> commands)
    {
        for (const char* command : commands)
            m_camera->addFault(std::string("status 1 cmd=") + command);
    }
    [[nodiscard]] bool leave()
    {
        return m_desk->back() && m_desk->answer<SvtaParamNotSaveDialog>("btnCancel") &&
               m_desk->isOnPage(Pages::HomePage);
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsUnknownTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", "SVAA009500551"}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
}

void SettingsUnknownTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsUnknownTest::defaultsEndTheMarks()
{
    refuse({"0x5080", "0x5070", "0x50a0", "0x5090"});
    QVERIFY(m_desk->open(*m_camera));
    const std::array controls{"btnIntelligent", "btnLow", "btn60", "btnHorizontalMirror"};
    for (const char* control : controls)
        QCOMPARE(m_desk->find(control)->accessibleDescription(),
                 QStringLiteral("could not be read"));
    QVERIFY(m_desk->reset());
    for (const char* control : controls)
        QCOMPARE(m_desk->find(control)->accessibleDescription(), QString());
}

void SettingsUnknownTest::switchedFramingEndsTheMarkOfTheView()
{
    refuse({"0x50a0"});
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->isChecked("btn120"));
    QCOMPARE(m_desk->find("btn120")->accessibleDescription(), QString());
}

void SettingsUnknownTest::pictureThatIsNotKnownIsNotSaved()
{
    m_camera->setValue("brightness", 150);
    m_camera->setValue("amp", 0);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kSaveFailed);
    QVERIFY(!m_saved->exists());
    QVERIFY(leave());

    m_camera->setValue("amp", 1);
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_desk->sliderValue("brightSlider"), 150);
    QCOMPARE(m_camera->value("brightness"), 150);
}

void SettingsUnknownTest::previewButtonFillsThePageOfACameraThatCouldNotBeOpened()
{
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->fault("video-open-error");
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(!m_desk->find("stackedWidget")->isEnabled());
    m_camera->clearFaults();
    QVERIFY(m_desk->clickPreview());
    QVERIFY(m_camera->waitFor("streaming"));
    QVERIFY(m_desk->find("stackedWidget")->isEnabled());
    QVERIFY(m_desk->isChecked("btnHorizontalMirror"));
    QCOMPARE(m_desk->sliderValues(), pictureOf(*m_camera));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QCOMPARE(m_camera->value("HorizontalMirror"), 0);
}

QTEST_MAIN(SettingsUnknownTest)
#include "SettingsUnknownTest.moc"
