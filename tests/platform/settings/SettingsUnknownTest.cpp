#include "CameraDesk.h"
#include "SvtaParamNotSaveDialog.h"

#include <array>
#include <memory>
#include <QRegularExpression>
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

    void subModeThatIsNotReportedIsNotWritten();
    void subModeThatIsReportedLaterIsNoEdit();
    void framingIsSwitchedOffWithoutAnAnswer();
    void valueThatReplacedAnUnknownOneStaysWhenTheEditsAreDiscarded();
    void defaultsEndTheMarks();
    void switchedFramingEndsTheMarkOfTheView();
    void cameraIsNotAskedAfterTwoLostReads();
    void pictureThatIsNotKnownIsNotSaved();
    void previewButtonFillsThePageOfACameraThatCouldNotBeOpened();

private:
    /// The camera refuses these read commands.
    void refuse(std::initializer_list<const char*> commands)
    {
        for (const char* command : commands)
            m_camera->addFault(std::string("status 1 cmd=") + command);
    }
    /// Reads @p command without an answer. An error comes without the wait of a time-out.
    void lose(const char* command)
    {
        m_camera->addFault(std::string("readerror times=1000 cmd=") + command);
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

void SettingsUnknownTest::subModeThatIsNotReportedIsNotWritten()
{
    m_camera->setValue("autoFrameSwicth", 1);
    m_camera->setValue("autoFrameMode", 1);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("rbtnDivisionMaster")); // and it still is at the next opening
    QVERIFY(m_desk->back());

    m_camera->setValue("autoFrameSwicth", 0);
    refuse({"0x5030"});
    m_camera->forgetRequests();
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->switchIntelligent());
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
    QCOMPARE(m_camera->value("autoFrameMode"), 1);
    QCOMPARE(writesTo(*m_camera).filter(QStringLiteral("5031")), QStringList());
}

void SettingsUnknownTest::subModeThatIsReportedLaterIsNoEdit()
{
    m_camera->setValue("autoFrameSwicth", 1);
    m_camera->setValue("autoFrameMode", 1);
    m_camera->addFault("status 1 times=1 cmd=0x5030");
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("rbtnDivisionMaster"));
    QCOMPARE(m_camera->value("autoFrameMode"), 1);
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsUnknownTest::framingIsSwitchedOffWithoutAnAnswer()
{
    m_camera->setValue("autoFrameSwicth", 1);
    QVERIFY(m_desk->open(*m_camera));
    refuse({"0x5080", "0x5040"});
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(!m_desk->isChecked("btnIntelligent"));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
}

void SettingsUnknownTest::valueThatReplacedAnUnknownOneStaysWhenTheEditsAreDiscarded()
{
    m_camera->setValue("CameraView", 90);
    refuse({"0x50a0", "0x5070"});
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    m_camera->forgetRequests();
    QVERIFY(leave());
    // There is no value to restore but that of the mirror.
    QCOMPARE(writesTo(*m_camera).filter(QRegularExpression(QStringLiteral("^(50A1|5071)"))),
             QStringList());
    QCOMPARE(m_camera->value("CameraView"), 60);
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
    QCOMPARE(m_camera->value("HorizontalMirror"), 0);
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

void SettingsUnknownTest::cameraIsNotAskedAfterTwoLostReads()
{
    QVERIFY(m_desk->open(*m_camera));
    for (const char* command : {"0x5020", "0x5030", "0x5040", "0x5080"})
        lose(command);
    m_camera->forgetRequests();
    QVERIFY(m_desk->choose("btn60"));
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->choose("btn60"));
    QCOMPARE(requestsTo(*m_camera).filter(QRegularExpression(QStringLiteral("^[^=]*$"))),
             (QStringList{"5020", "5030"}));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
    QCOMPARE(m_camera->value("CameraView"), 60);
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
    m_camera->fault("denied");
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
