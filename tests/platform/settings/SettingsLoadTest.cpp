#include "CameraDesk.h"
#include "SvtaParamNotSaveDialog.h"

#include <memory>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

const char* const kSerial = "SVAA009500551";
const QList<int> kFactoryPicture{128, 128, 128, 128};

} // namespace

/// The values on the settings page of a camera that is opened, and the writes to the camera.
class SettingsLoadTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pictureWithoutSavedSettingsComesFromTheCamera();
    void readingCreatesNoFile();
    void savedPictureGoesToTheCameraAndOntoThePage();
    void missingKeysOfASavedPictureReadAsZero();
    void savedPictureOfAnotherCameraIsNotUsed();
    void groupNamesAreCaseSensitive();
    void slidersHaveOneRangeForEveryCamera();
    void settingsAreReadOnceInTheirOrder();
    void deviceSettingsAreShown_data();
    void deviceSettingsAreShown();
    void intelligentIsShownOnWhenEitherFramingIs_data();
    void intelligentIsShownOnWhenEitherFramingIs();
    void sensitivityIsShownByItsLevel_data();
    void sensitivityIsShownByItsLevel();
    void openingChangesNoRegister_data();
    void openingChangesNoRegister();
    void unreadableViewIsNotWrittenBack();
    void settingsThatAreNotAnsweredReadAsZero();
    void valueThatIsNotAnsweredIsWrittenOnlyByTheUser();
    void silentCameraIsAskedTwiceInAnOpening();
    void settingsOfACameraThatCannotBeOpenedReadAsZero();
    void nothingIsEditedAfterOpening();
    void valuesAreReadAgainAfterLeaving();
    void valuesAreKeptOverTheInformationPage();
    void savedPictureIsAppliedWhenTheCameraIsPluggedIn();
    void listWritesNothingToACameraWithoutSavedSettings();
    void replugShowsTheFirstPresetUntilThePageOpens();
    void presetOfTheOtherKeyIsShownOnReplug();
    void replugDoesNotChangeAnOpenPage();
    void damagedFileMakesThePageShowTheCamerasValues_data();
    void damagedFileMakesThePageShowTheCamerasValues();
    void numbersOutOfRangeAreAccepted();

private:
    /// Plugs a camera in and opens it.
    [[nodiscard]] bool openCamera() { return m_desk->startWith(*m_camera); }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsLoadTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", kSerial}});
    m_desk = std::make_unique<CameraDesk>();
}

void SettingsLoadTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsLoadTest::pictureWithoutSavedSettingsComesFromTheCamera()
{
    m_camera->setValue("brightness", 90);
    m_camera->setValue("contrast", 100);
    m_camera->setValue("saturation", 110);
    m_camera->setValue("sharpness", 120);
    QVERIFY(openCamera());
    QCOMPARE(m_desk->sliderValues(), (QList<int>{90, 100, 110, 120}));
    QCOMPARE(m_desk->text("brightChangeLab"), QStringLiteral("12%"));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{90, 100, 110, 120}));
}

void SettingsLoadTest::readingCreatesNoFile()
{
    QVERIFY(openCamera());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_saved->files(), QStringList());
}

void SettingsLoadTest::savedPictureGoesToTheCameraAndOntoThePage()
{
    QVERIFY(m_saved->put("[SVAA009500551]\nbright=100\ncontrast=101\nsaturation=102\n"
                         "sharpness=103\nimagemode=2\n"));
    QVERIFY(openCamera());
    QCOMPARE(m_desk->sliderValues(), (QList<int>{100, 101, 102, 103}));
    QVERIFY(m_desk->isChecked("btnVividMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{100, 101, 102, 103}));
}

void SettingsLoadTest::missingKeysOfASavedPictureReadAsZero()
{
    QVERIFY(m_saved->put("[SVAA009500551]\nbright=100\nimagemode=1\n"));
    QVERIFY(openCamera());
    // Shown at the lower end of the scale; the camera receives the true value.
    QCOMPARE(m_desk->sliderValues(), (QList<int>{100, 78, 78, 78}));
    QCOMPARE(m_desk->text("contrastChangeLab"), QStringLiteral("0"));
    QVERIFY(m_desk->isChecked("btnBrightMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{100, 0, 0, 0}));
}

void SettingsLoadTest::savedPictureOfAnotherCameraIsNotUsed()
{
    QVERIFY(m_saved->put("[SVAA009500552]\nbright=100\ncontrast=100\nsaturation=100\n"
                         "sharpness=100\nimagemode=2\n"));
    QVERIFY(openCamera());
    QCOMPARE(m_desk->sliderValues(), kFactoryPicture);
    QVERIFY(m_desk->isChecked("btnStandardMode"));
}

void SettingsLoadTest::groupNamesAreCaseSensitive()
{
    QVERIFY(m_saved->put("[svaa009500551]\nbright=100\n"));
    QVERIFY(openCamera());
    QCOMPARE(m_desk->sliderValues(), kFactoryPicture);
}

void SettingsLoadTest::slidersHaveOneRangeForEveryCamera()
{
    m_camera = std::make_unique<PluggedCamera>(std::initializer_list<PluggedCamera::Option>{
        {"serial", kSerial}, {"range-brightness", "0:64:1:32"}, {"range-contrast", "-10:300:5:0"}});
    QVERIFY(openCamera());
    for (const char* name :
         {"brightSlider", "contrastSlider", "saturationSlider", "sharpnessSlider"}) {
        QCOMPARE(m_desk->find<QSlider>(name)->minimum(), 78);
        QCOMPARE(m_desk->find<QSlider>(name)->maximum(), 178);
    }
    // A value outside the scale is not changed in the camera.
    QCOMPARE(pictureOf(*m_camera), (QList<int>{32, 0, 128, 128}));
}

void SettingsLoadTest::settingsAreReadOnceInTheirOrder()
{
    QVERIFY(m_desk->start());
    m_camera->forgetRequests();
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(requestsTo(*m_camera), (QStringList{"5001", "5010", "5080", "5040", "5030", "5070",
                                                 "50A0", "5090", "50A1=120", "5091=0", "5020"}));
}

void SettingsLoadTest::deviceSettingsAreShown_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("widget");
    QTest::addColumn<bool>("checked");
    const auto row = [](const char* name, int value, const char* widget, bool checked) {
        QTest::addRow("%s %d", name, value)
            << QByteArray(name) << value << QByteArray(widget) << checked;
    };
    row("CameraView", 60, "btn60", true);
    row("CameraView", 90, "btn90", true);
    row("CameraView", 120, "btn120", true);
    row("HorizontalMirror", 0, "btnHorizontalMirror", false);
    row("HorizontalMirror", 1, "btnHorizontalMirror", true);
    row("autoFrameSwicth", 1, "rbtnAutoFraming", true);
    row("autoFrameSwicth", 1, "btnIntelligent", true);
    row("frameMaster", 1, "rbtnFrameMaster", true);
    row("frameMaster", 1, "btnIntelligent", true);
}

void SettingsLoadTest::deviceSettingsAreShown()
{
    QFETCH(const QByteArray, name);
    QFETCH(const int, value);
    QFETCH(const QByteArray, widget);
    m_camera->setValue(name.toStdString(), value);
    QVERIFY(openCamera());
    QTEST(m_desk->isChecked(widget), "checked");
    QCOMPARE(m_camera->value(name.toStdString()), value);
}

void SettingsLoadTest::intelligentIsShownOnWhenEitherFramingIs_data()
{
    QTest::addColumn<int>("autoFraming");
    QTest::addColumn<int>("frameMaster");
    QTest::addColumn<int>("subMode");
    QTest::addColumn<QSize>("outer");
    QTest::newRow("off") << 0 << 0 << 0 << QSize(333, 96);
    QTest::newRow("automatic, group") << 1 << 0 << 0 << QSize(333, 240);
    QTest::newRow("automatic, individual") << 1 << 0 << 1 << QSize(333, 240);
    QTest::newRow("frame master") << 0 << 1 << 0 << QSize(333, 182);
    QTest::newRow("frame master, individual unused") << 0 << 1 << 1 << QSize(333, 182);
}

void SettingsLoadTest::intelligentIsShownOnWhenEitherFramingIs()
{
    QFETCH(const int, autoFraming);
    QFETCH(const int, frameMaster);
    QFETCH(const int, subMode);
    m_camera->setValue("autoFrameSwicth", autoFraming);
    m_camera->setValue("frameMaster", frameMaster);
    m_camera->setValue("autoFrameMode", subMode);
    QVERIFY(openCamera());
    const bool on = autoFraming != 0 || frameMaster != 0;
    QCOMPARE(m_desk->isChecked("btnIntelligent"), on);
    QTEST(m_desk->find("intelligentSetWidget")->size(), "outer");
    QCOMPARE(m_desk->find("intelligentExpandWidget")->isVisible(), on);
    QCOMPARE(m_desk->find("autoFramingExpandWidget")->isVisible(), autoFraming != 0);
    for (const char* view : {"btn60", "btn90", "btn120"})
        QCOMPARE(m_desk->find(view)->isEnabled(), !on);
    if (autoFraming != 0)
        QCOMPARE(m_desk->isChecked("rbtnDivisionMaster"), subMode != 0);
    QCOMPARE(m_camera->value("autoFrameSwicth"), autoFraming);
    QCOMPARE(m_camera->value("frameMaster"), frameMaster);
    QCOMPARE(m_camera->value("autoFrameMode"), subMode);
}

void SettingsLoadTest::sensitivityIsShownByItsLevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QStringList>("checked");
    for (const int level : {0, 30})
        QTest::addRow("%d", level) << level << QStringList{"btnLow"};
    for (const int level : {31, 50})
        QTest::addRow("%d", level) << level << QStringList{"btnMiddle"};
    for (const int level : {51, 80})
        QTest::addRow("%d", level) << level << QStringList{"btnHeigh"};
    for (const int level : {81, 90, 127})
        QTest::addRow("%d", level) << level << QStringList();
}

void SettingsLoadTest::sensitivityIsShownByItsLevel()
{
    QFETCH(const int, level);
    m_camera->setValue("PickupSensitivity", level);
    QVERIFY(openCamera());
    QStringList shown;
    for (const char* name : {"btnLow", "btnMiddle", "btnHeigh"}) {
        if (m_desk->isChecked(name))
            shown << name;
    }
    QTEST(shown, "checked");
    QCOMPARE(m_camera->value("PickupSensitivity"), level);
}

void SettingsLoadTest::openingChangesNoRegister_data()
{
    QTest::addColumn<int>("autoFraming");
    QTest::addColumn<int>("frameMaster");
    QTest::addColumn<int>("subMode");
    QTest::addColumn<int>("view");
    QTest::newRow("as new") << 0 << 0 << 0 << 120;
    QTest::newRow("narrow view") << 0 << 0 << 1 << 60;
    QTest::newRow("automatic framing") << 1 << 0 << 1 << 120;
    QTest::newRow("automatic framing on a narrow view") << 1 << 0 << 0 << 90;
    QTest::newRow("frame master") << 0 << 1 << 1 << 60;
}

void SettingsLoadTest::openingChangesNoRegister()
{
    QFETCH(const int, autoFraming);
    QFETCH(const int, frameMaster);
    QFETCH(const int, subMode);
    QFETCH(const int, view);
    m_camera->setValue("autoFrameSwicth", autoFraming);
    m_camera->setValue("frameMaster", frameMaster);
    m_camera->setValue("autoFrameMode", subMode);
    m_camera->setValue("CameraView", view);
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->setValue("PickupSensitivity", 77);
    m_camera->setValue("brightness", 81);
    const std::multimap<std::string, std::string> before = m_camera->registers();
    QVERIFY(openCamera());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(m_camera->waitFor("idle"));
    QVERIFY(m_camera->registers() == before);
}

void SettingsLoadTest::unreadableViewIsNotWrittenBack()
{
    m_camera->setValue("CameraView", 255); // reads as -1
    QVERIFY(openCamera());
    QVERIFY(!writesTo(*m_camera).join(' ').contains(QStringLiteral("50A1")));
    QCOMPARE(m_camera->value("CameraView"), 255);
}

void SettingsLoadTest::settingsThatAreNotAnsweredReadAsZero()
{
    for (const char* name : {"autoFrameSwicth", "HorizontalMirror", "autoFrameMode"})
        m_camera->setValue(name, 1);
    m_camera->setValue("CameraView", 90);
    QVERIFY(m_desk->start());
    for (const char* command : {"0x5080", "0x5040", "0x5030", "0x5070", "0x50a0", "0x5090"})
        m_camera->addFault(std::string("status 1 cmd=") + command);
    const std::multimap<std::string, std::string> before = m_camera->registers();
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(!m_desk->isChecked("btnIntelligent"));
    QVERIFY(!m_desk->isChecked("btnHorizontalMirror"));
    for (const char* button : {"btnLow", "btnMiddle", "btnHeigh", "btn60", "btn90", "btn120"})
        QVERIFY2(!m_desk->isChecked(button), button);
    for (const char* control : {"btnLow", "btn60", "btnHorizontalMirror", "btnIntelligent"}) {
        QCOMPARE(m_desk->find(control)->toolTip(), QStringLiteral("could not be read"));
        QCOMPARE(m_desk->find(control)->accessibleDescription(),
                 QStringLiteral("could not be read"));
    }
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage)); // nothing is edited, so there is no question
    QVERIFY(m_camera->waitFor("idle"));
    QVERIFY(m_camera->registers() == before);
}

/// The user sets one of the values, and takes the edit back.
void SettingsLoadTest::valueThatIsNotAnsweredIsWrittenOnlyByTheUser()
{
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->setValue("CameraView", 90);
    QVERIFY(m_desk->start());
    for (const char* command : {"0x50a0", "0x5090"})
        m_camera->addFault(std::string("status 1 cmd=") + command);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->answer<SvtaParamNotSaveDialog>("btnCancel"));
    QVERIFY(m_camera->waitFor("idle"));
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QCOMPARE(m_camera->value("CameraView"), 90);

    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btn60"));
    QCOMPARE(m_camera->value("CameraView"), 60);
    QCOMPARE(m_desk->find("btn60")->toolTip(), QString());
}

void SettingsLoadTest::silentCameraIsAskedTwiceInAnOpening()
{
    m_camera->setValue("HorizontalMirror", 1);
    QVERIFY(m_desk->start());
    m_camera->forgetRequests();
    m_camera->fault("noreply");
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_camera->requests().size(), 2); // version and serial number
    m_camera->clearFaults();
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btnHorizontalMirror"));
}

void SettingsLoadTest::settingsOfACameraThatCannotBeOpenedReadAsZero()
{
    m_camera->setValue("autoFrameSwicth", 1);
    m_camera->setValue("HorizontalMirror", 1);
    QVERIFY(m_desk->start());
    m_camera->fault("open-error");
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(!m_desk->isChecked("btnIntelligent"));
    QVERIFY(!m_desk->isChecked("btnHorizontalMirror"));
    // Nothing reaches the HID interface, which cannot be opened; the picture controls do not use
    // it.
    QCOMPARE(m_camera->value("autoFrameSwicth"), 1);
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QCOMPARE(m_desk->sliderValues(), kFactoryPicture);
}

void SettingsLoadTest::nothingIsEditedAfterOpening()
{
    m_camera->setValue("autoFrameSwicth", 1);
    m_camera->setValue("autoFrameMode", 1);
    m_camera->setValue("PickupSensitivity", 33);
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->setValue("sharpness", 170);
    QVERIFY(openCamera());
    QVERIFY(m_desk->back());
    QVERIFY(!m_desk->isUp<SvtaParamNotSaveDialog>());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsLoadTest::valuesAreReadAgainAfterLeaving()
{
    QVERIFY(openCamera());
    QVERIFY(m_desk->back());
    m_camera->setValue("PickupSensitivity", 80);
    m_camera->setValue("saturation", 79);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QCOMPARE(m_desk->sliderValue("saturationSlider"), 79);
}

void SettingsLoadTest::valuesAreKeptOverTheInformationPage()
{
    QVERIFY(openCamera());
    QVERIFY(m_desk->choose("btnHeigh"));
    QVERIFY(m_desk->setSlider("brightSlider", 100));
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    m_camera->forgetRequests();
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QCOMPARE(m_desk->sliderValue("brightSlider"), 100);
    QVERIFY(!requestsTo(*m_camera).contains(QStringLiteral("5070")));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isUp<SvtaParamNotSaveDialog>());
}

void SettingsLoadTest::savedPictureIsAppliedWhenTheCameraIsPluggedIn()
{
    QVERIFY(m_saved->put("[SVAA009500551]\nbright=100\ncontrast=101\nsaturation=102\n"
                         "sharpness=103\nimagemode=2\n"));
    QVERIFY(m_desk->start());
    QVERIFY(m_desk->replug(*m_camera));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{100, 101, 102, 103}));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QVERIFY(!m_camera->stats().streaming);
}

void SettingsLoadTest::listWritesNothingToACameraWithoutSavedSettings()
{
    QVERIFY(m_saved->put("[SVAA009500552]\nbright=100\ncontrast=101\nsaturation=102\n"
                         "sharpness=103\nimagemode=2\n"));
    QVERIFY(m_desk->start());
    QVERIFY(m_desk->replug(*m_camera));
    QCOMPARE(pictureOf(*m_camera), kFactoryPicture);
    QCOMPARE(writesTo(*m_camera), QStringList());
}

void SettingsLoadTest::replugShowsTheFirstPresetUntilThePageOpens()
{
    QVERIFY(openCamera());
    QVERIFY(m_desk->choose("btnVividMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_saved->group(kSerial).value(QStringLiteral("imagemode")), 2);
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->replug(*m_camera));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{130, 128, 140, 120}));
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btnVividMode"));
}

void SettingsLoadTest::presetOfTheOtherKeyIsShownOnReplug()
{
    QVERIFY(m_saved->put("[SVAA009500551]\nbright=100\nimage_mode=1\nimagemode=2\n"));
    QVERIFY(m_desk->start());
    QVERIFY(m_desk->replug(*m_camera));
    QVERIFY(m_desk->isChecked("btnBrightMode"));
}

void SettingsLoadTest::replugDoesNotChangeAnOpenPage()
{
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_saved->put("[SVAA009500552]\nbright=90\ncontrast=90\nsaturation=90\nsharpness=90\n"
                         "imagemode=2\n"));
    QVERIFY(openCamera());
    QVERIFY(m_desk->choose("btnBrightMode"));
    QVERIFY(m_desk->replug(other));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->isChecked("btnBrightMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QCOMPARE(pictureOf(other), kFactoryPicture);
}

void SettingsLoadTest::damagedFileMakesThePageShowTheCamerasValues_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("no ini file") << QByteArray("\x89PNG\r\n\x1a\n\xff\xfe[[[]=\n=]");
    QTest::newRow("cut short") << QByteArray("[SVAA0095");
    QTest::newRow("brackets") << QByteArray(2000, '[');
}

void SettingsLoadTest::damagedFileMakesThePageShowTheCamerasValues()
{
    QFETCH(const QByteArray, contents);
    QVERIFY(m_saved->put(contents));
    QVERIFY(openCamera());
    QCOMPARE(m_desk->sliderValues(), kFactoryPicture);
    QVERIFY(m_desk->isChecked("btnStandardMode"));
    QCOMPARE(m_saved->contents(), contents);
}

void SettingsLoadTest::numbersOutOfRangeAreAccepted()
{
    QVERIFY(m_saved->put("[SVAA009500551]\nbright=99999999999\ncontrast=-2147483648\n"
                         "saturation=text\nsharpness=2147483647\nimagemode=77\n"));
    QVERIFY(openCamera());
    QCOMPARE(m_desk->sliderValues(), (QList<int>{78, 78, 78, 178}));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
    QCOMPARE(pictureOf(*m_camera), (QList<int>{0, 0, 0, 255}));
}

QTEST_MAIN(SettingsLoadTest)
#include "SettingsLoadTest.moc"
