#include "CameraDesk.h"
#include "MaskForm.h"
#include "SvtaParamNotSaveDialog.h"

#include <memory>
#include <QtTest>

using Pages = SvtaPagesView;

namespace {

const QString kSerial = QStringLiteral("SVAA009500551");

} // namespace

/// Leaving the settings page: when it asks, and what happens to the edits.
class SettingsLeaveTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void unchangedSettingsAreLeftWithoutAQuestion();
    void anyChangeMakesTheQuestionAppear_data();
    void anyChangeMakesTheQuestionAppear();
    void questionHasItsTexts();
    void revertedChangeDoesNotAsk_data();
    void revertedChangeDoesNotAsk();
    void otherPresetWithTheSameValuesDoesNotAsk();
    void backActsOncePerSecond();
    void closingTheQuestionKeepsPageAndEdits();
    void editingContinuesAfterTheQuestionWasClosed();
    void exitWritesTheSavedValuesBack();
    void exitShowsTheSavedValuesWhenOpenedAgain();
    void exitRestoresTheFraming_data();
    void exitRestoresTheFraming();
    void exitRestoresTheFramingInOrder();
    void exitRestoresTheSubMode();
    void exitAfterASaveRestoresWhatWasSaved();
    void exitRestoresASavedPicture();
    void exitWithASensitivityOutsideTheScale();
    void saveAndExitSavesAndLeaves();
    void saveAndExitThatFailsLeavesWithoutSaving();
    void exitWritesOnlyToTheOpenCamera();
    void nextCameraIsNotTouchedByTheExit();
    void previewStopsWithThePage();

private:
    [[nodiscard]] bool isQuestionUp() const { return m_desk->isUp<SvtaParamNotSaveDialog>(); }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsLeaveTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_camera = std::make_unique<PluggedCamera>(
        std::initializer_list<PluggedCamera::Option>{{"serial", kSerial.toStdString()}});
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
}

void SettingsLeaveTest::cleanup()
{
    QCOMPARE(m_camera->stats().violations, std::uint64_t{0});
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsLeaveTest::unchangedSettingsAreLeftWithoutAQuestion()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_desk->find("backWidget")->isVisible());
}

void SettingsLeaveTest::anyChangeMakesTheQuestionAppear_data()
{
    QTest::addColumn<QByteArray>("widget");
    for (const char* widget : {"btn60", "btn90", "btnHorizontalMirror", "btnLow", "btnHeigh",
                               "btnIntelligent", "btnBrightMode", "btnVividMode"})
        QTest::newRow(widget) << QByteArray(widget);
    for (const char* slider :
         {"brightSlider", "contrastSlider", "saturationSlider", "sharpnessSlider"})
        QTest::newRow(slider) << QByteArray(slider);
}

void SettingsLeaveTest::anyChangeMakesTheQuestionAppear()
{
    QFETCH(const QByteArray, widget);
    QVERIFY(m_desk->open(*m_camera));
    if (widget.endsWith("Slider"))
        QVERIFY(m_desk->setSlider(widget, 129));
    else
        QVERIFY(m_desk->choose(widget));
    QVERIFY(m_desk->back());
    QVERIFY(isQuestionUp());
    QVERIFY(m_desk->find<MaskForm>()->isVisible());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
}

void SettingsLeaveTest::questionHasItsTexts()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->back());
    auto* dialog = m_desk->find<SvtaParamNotSaveDialog>();
    QCOMPARE(dialog->findChild<QLabel*>("labTitle")->text(), QStringLiteral("Notice"));
    QCOMPARE(dialog->findChild<QLabel*>("labMessage")->text(),
             QStringLiteral("Settings unsaved. Exit?"));
    QCOMPARE(dialog->findChild<QPushButton*>("btnCancel")->text(), QStringLiteral("Exit"));
    QCOMPARE(dialog->findChild<QPushButton*>("btnConfirm")->text(),
             QStringLiteral("Save and Exit"));
    QVERIFY(m_desk->answer<SvtaParamNotSaveDialog>("btnClose"));
}

void SettingsLeaveTest::revertedChangeDoesNotAsk_data()
{
    QTest::addColumn<QByteArrayList>("clicks");
    QTest::newRow("mirror") << QByteArrayList{"btnHorizontalMirror", "btnHorizontalMirror"};
    QTest::newRow("view") << QByteArrayList{"btn60", "btn90", "btn120"};
    QTest::newRow("sensitivity") << QByteArrayList{"btnHeigh", "btnLow", "btnMiddle"};
    QTest::newRow("preset") << QByteArrayList{"btnVividMode", "btnStandardMode"};
    QTest::newRow("slider") << QByteArrayList{"brightSlider 90", "brightSlider 128"};
    QTest::newRow("intelligent") << QByteArrayList{"btnIntelligent", "btnIntelligent"};
}

void SettingsLeaveTest::revertedChangeDoesNotAsk()
{
    QFETCH(const QByteArrayList, clicks);
    QVERIFY(m_desk->open(*m_camera));
    for (const QByteArray& click : clicks) {
        const QByteArrayList words = click.split(' ');
        m_desk->unlockIntelligent();
        if (words.size() == 2)
            QVERIFY(m_desk->setSlider(words.first(), words.last().toInt()));
        else
            QVERIFY(m_desk->choose(click));
    }
    QVERIFY(m_desk->back());
    QVERIFY(!isQuestionUp());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsLeaveTest::otherPresetWithTheSameValuesDoesNotAsk()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnCustomMode"));
    QVERIFY(m_desk->back());
    QVERIFY(!isQuestionUp());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsLeaveTest::backActsOncePerSecond()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QVERIFY(m_desk->isOnPage(Pages::InfoPage));
    auto* button = m_desk->find<QPushButton>("backBtn");
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(!button->isEnabled());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QTRY_VERIFY(button->isEnabled());
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
}

void SettingsLeaveTest::closingTheQuestionKeepsPageAndEdits()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->setSlider("brightSlider", 90));
    m_camera->forgetRequests();
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->answer<SvtaParamNotSaveDialog>("btnClose"));
    QVERIFY(m_desk->isOnPage(Pages::SettingPage));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_desk->find<MaskForm>()->isVisible());
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QCOMPARE(m_desk->sliderValue("brightSlider"), 90);
    QCOMPARE(requestsTo(*m_camera), QStringList());
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
    QCOMPARE(m_camera->value("brightness"), 90);
    QVERIFY(m_desk->back());
    QVERIFY(isQuestionUp());
}

void SettingsLeaveTest::editingContinuesAfterTheQuestionWasClosed()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->answer<SvtaParamNotSaveDialog>("btnClose"));
    // Opening the information page and returning must not replace the edits by values that are read
    // again.
    QVERIFY(m_desk->click("deviceInfoBtn"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(m_desk->click("btnMiddle"));
    QVERIFY(m_desk->back());
    QVERIFY(!isQuestionUp());
}

void SettingsLeaveTest::exitWritesTheSavedValuesBack()
{
    m_camera->setValue("CameraView", 90);
    m_camera->setValue("HorizontalMirror", 1);
    m_camera->setValue("PickupSensitivity", 30);
    m_camera->setValue("contrast", 99);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->click("btnHorizontalMirror"));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click("btnVividMode"));
    m_camera->forgetRequests();
    QVERIFY(m_desk->discard());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_desk->find<MaskForm>()->isVisible());
    QCOMPARE(requestsTo(*m_camera),
             (QStringList{"5080", "5040", "5071=30", "5091=1", "50A1=90", "5041=0"}));
    QCOMPARE(m_camera->value("CameraView"), 90);
    QCOMPARE(m_camera->value("HorizontalMirror"), 1);
    QCOMPARE(m_camera->value("PickupSensitivity"), 30);
    QCOMPARE(pictureOf(*m_camera), (QList<int>{128, 99, 128, 128}));
    QVERIFY(!m_saved->exists());
}

void SettingsLeaveTest::exitShowsTheSavedValuesWhenOpenedAgain()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->discard());
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->isChecked("btn120"));
    QVERIFY(m_desk->isChecked("btnMiddle"));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{128, 128, 128, 128}));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
}

void SettingsLeaveTest::exitRestoresTheFraming_data()
{
    QTest::addColumn<int>("autoFraming");
    QTest::addColumn<int>("frameMaster");
    QTest::addColumn<QByteArrayList>("clicks");
    QTest::newRow("automatic, then frame master") << 1 << 0 << QByteArrayList{"rbtnFrameMaster"};
    QTest::newRow("automatic, then off") << 1 << 0 << QByteArrayList{"btnIntelligent"};
    QTest::newRow("automatic, off, narrow") << 1 << 0 << QByteArrayList{"btnIntelligent", "btn60"};
    QTest::newRow("frame master, then automatic") << 0 << 1 << QByteArrayList{"rbtnAutoFraming"};
    QTest::newRow("frame master, then off") << 0 << 1 << QByteArrayList{"btnIntelligent"};
    QTest::newRow("off, then automatic") << 0 << 0 << QByteArrayList{"btnIntelligent"};
    QTest::newRow("off, then frame master")
        << 0 << 0 << QByteArrayList{"btnIntelligent", "rbtnFrameMaster"};
}

void SettingsLeaveTest::exitRestoresTheFraming()
{
    QFETCH(const int, autoFraming);
    QFETCH(const int, frameMaster);
    QFETCH(const QByteArrayList, clicks);
    m_camera->setValue("autoFrameSwicth", autoFraming);
    m_camera->setValue("frameMaster", frameMaster);
    QVERIFY(m_desk->open(*m_camera));
    for (const QByteArray& click : clicks)
        QVERIFY(m_desk->choose(click));
    QVERIFY(m_desk->discard());
    QCOMPARE(m_camera->value("autoFrameSwicth"), autoFraming);
    QCOMPARE(m_camera->value("frameMaster"), frameMaster);
    QCOMPARE(m_camera->value("CameraView"), 120);
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_desk->isChecked("btnIntelligent"), autoFraming + frameMaster > 0);
    if (autoFraming != 0)
        QVERIFY(m_desk->isChecked("rbtnAutoFraming"));
    if (frameMaster != 0)
        QVERIFY(m_desk->isChecked("rbtnFrameMaster"));
    QVERIFY(m_desk->back());
    QVERIFY(!isQuestionUp());
}

void SettingsLeaveTest::exitRestoresTheFramingInOrder()
{
    m_camera->setValue("autoFrameSwicth", 1);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->choose("rbtnFrameMaster"));
    m_camera->forgetRequests();
    QVERIFY(m_desk->discard());
    QCOMPARE(requestsTo(*m_camera), (QStringList{"50A1=120", "5030", "5020", "5071=50", "5091=0",
                                                 "50A1=120", "5041=0", "5081=1", "5030"}));
}

void SettingsLeaveTest::exitRestoresTheSubMode()
{
    m_camera->setValue("autoFrameSwicth", 1);
    m_camera->setValue("autoFrameMode", 1);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->choose("rbtnPersonalTrack"));
    QCOMPARE(m_camera->value("autoFrameMode"), 0);
    QVERIFY(m_desk->discard());
    QCOMPARE(m_camera->value("autoFrameMode"), 1);
}

void SettingsLeaveTest::exitAfterASaveRestoresWhatWasSaved()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QVERIFY(m_desk->click("btn90"));
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->discard());
    QCOMPARE(m_camera->value("CameraView"), 60);
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QCOMPARE(m_saved->group(kSerial).value("imagemode"), 1);
}

void SettingsLeaveTest::exitRestoresASavedPicture()
{
    QVERIFY(m_saved->put("[SVAA009500551]\nbright=100\ncontrast=101\nsaturation=102\n"
                         "sharpness=103\nimagemode=3\n"));
    const QByteArray before = m_saved->contents();
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnStandardMode"));
    QVERIFY(m_desk->discard());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{100, 101, 102, 103}));
    QCOMPARE(m_saved->contents(), before);
}

void SettingsLeaveTest::exitWithASensitivityOutsideTheScale()
{
    m_camera->setValue("PickupSensitivity", 90);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnLow"));
    QVERIFY(m_desk->discard());
    QCOMPARE(m_camera->value("PickupSensitivity"), 90);
    for (const char* name : {"btnLow", "btnMiddle", "btnHeigh"})
        QVERIFY2(!m_desk->isChecked(name), name);
}

void SettingsLeaveTest::saveAndExitSavesAndLeaves()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->back());
    m_camera->forgetRequests();
    QVERIFY(m_desk->answer<SvtaParamNotSaveDialog>("btnConfirm"));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->toast(), QStringLiteral("Successfully saved"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(requestsTo(*m_camera), QStringList());
    QCOMPARE(m_camera->value("CameraView"), 60);
    QCOMPARE(m_saved->group(kSerial).value("bright"), 138);
}

void SettingsLeaveTest::saveAndExitThatFailsLeavesWithoutSaving()
{
    const SavedSettings nowhere(QStringLiteral("/proc/marviktools"));
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->answer<SvtaParamNotSaveDialog>("btnConfirm"));
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->toast(), QStringLiteral("Save failed ， please try it again"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
}

void SettingsLeaveTest::exitWritesOnlyToTheOpenCamera()
{
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    other.setValue("PickupSensitivity", 30);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->click("btnHeigh"));
    other.forgetRequests();
    QVERIFY(m_desk->discard());
    QCOMPARE(requestsTo(other), QStringList());
    QCOMPARE(other.value("PickupSensitivity"), 30);
    QCOMPARE(m_camera->value("PickupSensitivity"), 50);
}

void SettingsLeaveTest::nextCameraIsNotTouchedByTheExit()
{
    PluggedCamera other{{"serial", "SVAA009500552"}};
    QVERIFY(m_desk->waitForCards(2));
    other.setValue("frameMaster", 1);
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->switchIntelligent());
    QVERIFY(m_desk->back());
    auto* question = m_desk->find<SvtaParamNotSaveDialog>();
    QVERIFY(QTest::qWaitForWindowExposed(question));
    // A fast user: the other camera is opened before the framing of the first is off.
    QTest::mouseClick(question->findChild<QPushButton*>("btnCancel"), Qt::LeftButton);
    QVERIFY(m_desk->open(other));
    QCOMPARE(m_camera->value("autoFrameSwicth"), 0);
    QCOMPARE(m_camera->value("frameMaster"), 0);
    QCOMPARE(other.value("frameMaster"), 1);
    QVERIFY(m_desk->isChecked("btnIntelligent"));
    QVERIFY(m_desk->back());
    QVERIFY(!isQuestionUp());
}

void SettingsLeaveTest::previewStopsWithThePage()
{
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_camera->waitFor("streaming"));
    QVERIFY(m_desk->back());
    QVERIFY(m_camera->waitFor("idle"));
    QVERIFY(m_camera->waitFor("video<=0"));
}

QTEST_MAIN(SettingsLeaveTest)
#include "SettingsLeaveTest.moc"
