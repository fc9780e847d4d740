#include "ParamSettingsPageTest.h"
#include "PreviewFailureText.h"

#include <QMap>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

/// What the page shows and signals when its values are set from outside.
class ParamSettingsPageStateTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsOnTheFeatureTabWithIntelligentOff();
    void settingASliderSignalsOnceWhetherOrNotItChanges();
    void settingEachSliderReachesItsOwnSignalAndLabel();
    void labelOfASlider_data();
    void labelOfASlider();
    void valueOffTheScaleIsSignalledAsItIs();
    void settingTheImageModeIsSilent();
    void settingTheFieldOfViewSignalsEveryValue();
    void markingAFramingSignalsAlsoWhenItIsMarked();
    void settingIntelligentIsSilent();
    void settingIntelligentShowsTheOptionsOfTheMarkedFraming();
    void settingTheSubModeSignalsWhenItChanges();
    void sensitivityOfALevel_data();
    void sensitivityOfALevel();
    void settingTheMirrorSignalsAndDoesNotSlide();
    void switchThatIsSetBeforeItsFirstShowHasItsKnobInPlace();
    void personCentringTakesTheFieldOfViewAway();

    void discardOfAutoFraming();
    void discardOfFrameMaster();
    void discardOfAnEmptyMap();
    void discardWithAHighSensitivityChecksNoButton();
    void discardOfAnUnchangedSubModeIsSilentAboutIt();
    void resetToDefaults();
    void resetLocksTheIntelligentSwitch();

    void noticeOf4kNeedsBothFlags_data();
    void noticeOf4kNeedsBothFlags();
    void noticeOf4kDisappearsAfterItsTime();
    void noticeOf4kLiesOverTheLivePreview();
    void previewAreaShowsAPictureWhileClosed();
    void previewTipIsShownOnDemand();
    void reasonForNoPictureIsShownWhole_data();
    void reasonForNoPictureIsShownWhole();
    void reasonForNoPictureEndsWithItsCamera();
    void previewAreaIsANativeWindowOfItsOwn();
    void entryResetsTabsAndScrolling();
    void visibleTextsStandAsTheyAre();

private:
    std::unique_ptr<ShownPage> m_shown;
};

void ParamSettingsPageStateTest::init()
{
    m_shown = std::make_unique<ShownPage>();
    QVERIFY(m_shown->isShown());
}

void ParamSettingsPageStateTest::cleanup()
{
    m_shown.reset();
}

void ParamSettingsPageStateTest::startsOnTheFeatureTabWithIntelligentOff()
{
    QVERIFY(m_shown->isChecked("btnFeatureSetting"));
    QVERIFY(m_shown->find("featureSettingPage")->isVisible());
    QVERIFY(!m_shown->find("intelligentExpandWidget")->isVisible());
    QVERIFY(!m_shown->find("tipWidgetFor4k")->isVisible());
    QVERIFY(!m_shown->find("previewTip")->isVisible());
    QVERIFY(m_shown->page().isCameraViewEnabled());
    for (const char* label :
         {"brightChangeLab", "contrastChangeLab", "saturationChangeLab", "sharpnessChangeLab"})
        QCOMPARE(m_shown->text(label), QStringLiteral("50%"));
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageStateTest::settingASliderSignalsOnceWhetherOrNotItChanges()
{
    m_shown->page().setPicture(PictureProperty::Brightness, 140);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("bright 140")});
    m_shown->page().setPicture(PictureProperty::Brightness, 140);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("bright 140")});
    QCOMPARE(m_shown->find<QSlider>("brightSlider")->value(), 140);
}

void ParamSettingsPageStateTest::settingEachSliderReachesItsOwnSignalAndLabel()
{
    m_shown->page().setPicture(PictureProperty::Brightness, 79);
    m_shown->page().setPicture(PictureProperty::Contrast, 80);
    m_shown->page().setPicture(PictureProperty::Sharpness, 81);
    m_shown->page().setPicture(PictureProperty::Saturation, 82);
    QCOMPARE(m_shown->taken(),
             (QStringList{QStringLiteral("bright 79"), QStringLiteral("contrast 80"),
                          QStringLiteral("sharpness 81"), QStringLiteral("saturation 82")}));
    QCOMPARE(m_shown->text("brightChangeLab"), QStringLiteral("1%"));
    QCOMPARE(m_shown->text("contrastChangeLab"), QStringLiteral("2%"));
    QCOMPARE(m_shown->text("sharpnessChangeLab"), QStringLiteral("3%"));
    QCOMPARE(m_shown->text("saturationChangeLab"), QStringLiteral("4%"));
}

void ParamSettingsPageStateTest::labelOfASlider_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("minimum") << 78 << QStringLiteral("0");
    QTest::newRow("one above") << 79 << QStringLiteral("1%");
    QTest::newRow("middle") << 128 << QStringLiteral("50%");
    QTest::newRow("maximum") << 178 << QStringLiteral("100%");
}

void ParamSettingsPageStateTest::labelOfASlider()
{
    QFETCH(const int, value);
    m_shown->page().setPicture(PictureProperty::Brightness, value);
    QTEST(m_shown->text("brightChangeLab"), "text");
}

void ParamSettingsPageStateTest::valueOffTheScaleIsSignalledAsItIs()
{
    m_shown->page().setPicture(PictureProperty::Brightness, 12);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("bright 12")});
    QCOMPARE(m_shown->find<QSlider>("brightSlider")->value(), 78);
    QCOMPARE(m_shown->text("brightChangeLab"), QStringLiteral("0"));
}

void ParamSettingsPageStateTest::settingTheImageModeIsSilent()
{
    const char* const names[] = {"btnStandardMode", "btnBrightMode", "btnVividMode",
                                 "btnCustomMode"};
    for (int mode = 3; mode >= 0; --mode) {
        m_shown->page().setImageMode(mode);
        QVERIFY(m_shown->isChecked(names[mode]));
    }
    for (const int mode : {-1, 4, 100}) {
        m_shown->page().setImageMode(mode);
        QVERIFY(m_shown->isChecked(names[0]));
    }
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageStateTest::settingTheFieldOfViewSignalsEveryValue()
{
    for (const int degrees : {60, 90, 120}) {
        m_shown->page().setCameraView(degrees);
        QCOMPARE(m_shown->page().selectedCameraView(), degrees);
        QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("viewChange %1").arg(degrees)});
    }
    m_shown->page().setCameraView(75);
    QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("viewChange 75")});
    QCOMPARE(m_shown->page().selectedCameraView(), 120);
    m_shown->page().setIntelligent(true);
    m_shown->page().setCameraView(60);
    QCOMPARE(m_shown->page().selectedCameraView(), 60);
}

void ParamSettingsPageStateTest::markingAFramingSignalsAlsoWhenItIsMarked()
{
    for (int i = 0; i < 2; ++i) {
        m_shown->page().setFrameMaster();
        QVERIFY(m_shown->isChecked("rbtnFrameMaster"));
        QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 182));
        QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("framing 1")});
    }
    for (int i = 0; i < 2; ++i) {
        m_shown->page().setAutoFraming();
        QVERIFY(m_shown->isChecked("rbtnAutoFraming"));
        QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 240));
        QCOMPARE(m_shown->taken(), QStringList{QStringLiteral("framing 0")});
    }
}

void ParamSettingsPageStateTest::settingIntelligentIsSilent()
{
    m_shown->page().setIntelligent(true);
    QVERIFY(m_shown->find<SvtaSwitchButton>("btnIntelligent")->isChecked());
    QVERIFY(m_shown->find("btnIntelligent")->isEnabled());
    QVERIFY(!m_shown->page().isCameraViewEnabled());
    m_shown->page().setIntelligent(false);
    QVERIFY(!m_shown->find<SvtaSwitchButton>("btnIntelligent")->isChecked());
    QVERIFY(m_shown->page().isCameraViewEnabled());
    QCOMPARE(m_shown->taken(), QStringList());
}

void ParamSettingsPageStateTest::settingIntelligentShowsTheOptionsOfTheMarkedFraming()
{
    m_shown->page().setFrameMaster();
    m_shown->page().setIntelligent(false);
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 96));
    m_shown->page().setIntelligent(true);
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 182));
    m_shown->page().setAutoFraming();
    m_shown->page().setIntelligent(false);
    m_shown->page().setIntelligent(true);
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 240));
}

void ParamSettingsPageStateTest::settingTheSubModeSignalsWhenItChanges()
{
    m_shown->page().setSubMode(0);
    QCOMPARE(m_shown->taken(), QStringList());
    m_shown->page().setSubMode(2);
    QVERIFY(m_shown->isChecked("rbtnDivisionMaster"));
    QVERIFY(m_shown->taken().contains(QStringLiteral("group off")));
    m_shown->page().setSubMode(0);
    QVERIFY(m_shown->isChecked("rbtnPersonalTrack"));
    QVERIFY(m_shown->taken().contains(QStringLiteral("group on")));
}

void ParamSettingsPageStateTest::sensitivityOfALevel_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("selected");
    for (const int level : {-1, 0, 30})
        QTest::addRow("%d", level) << level << 30;
    for (const int level : {31, 50})
        QTest::addRow("%d", level) << level << 50;
    for (const int level : {51, 80})
        QTest::addRow("%d", level) << level << 80;
    for (const int level : {81, 90, 255})
        QTest::addRow("%d", level) << level << 0;
}

void ParamSettingsPageStateTest::sensitivityOfALevel()
{
    QFETCH(const int, level);
    m_shown->page().setPickupSensitivity(level);
    QTEST(m_shown->page().selectedSensitivity(), "selected");
    QCOMPARE(m_shown->taken(), QStringList());
    m_shown->page().setPickupSensitivity(50);
    QCOMPARE(m_shown->page().selectedSensitivity(), 50);
}

void ParamSettingsPageStateTest::settingTheMirrorSignalsAndDoesNotSlide()
{
    m_shown->page().setHorizontalMirror(true);
    const QImage picture = m_shown->find("btnHorizontalMirror")->grab().toImage();
    QCOMPARE(picture.pixelColor(23, 10), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(6, 10), QColor(0x34, 0x76, 0xFF));
    m_shown->page().setHorizontalMirror(false);
    m_shown->page().setHorizontalMirror(false);
    QCOMPARE(m_shown->taken(),
             (QStringList{QStringLiteral("mirror on"), QStringLiteral("mirror off"),
                          QStringLiteral("mirror off")}));
}

void ParamSettingsPageStateTest::switchThatIsSetBeforeItsFirstShowHasItsKnobInPlace()
{
    ParamSettingsPage page;
    page.setIntelligent(true);
    page.setHorizontalMirror(true);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    for (const char* name : {"btnIntelligent", "btnHorizontalMirror"}) {
        const QImage picture = page.findChild<QWidget*>(QLatin1String(name))->grab().toImage();
        QCOMPARE(picture.pixelColor(28, 10), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(8, 10), QColor(0x34, 0x76, 0xFF));
    }
}

void ParamSettingsPageStateTest::personCentringTakesTheFieldOfViewAway()
{
    const auto centre = [this](bool on) {
        QMetaObject::invokeMethod(&m_shown->page(), "slotFigureCenteredSwitch", Q_ARG(bool, on));
    };
    centre(true);
    QVERIFY(!m_shown->find("btn60")->isEnabled());
    centre(false);
    QVERIFY(m_shown->find("btn60")->isEnabled());
    QCOMPARE(m_shown->taken(),
             (QStringList{QStringLiteral("figureCenter on"), QStringLiteral("figureCenter off")}));
}

void ParamSettingsPageStateTest::discardOfAutoFraming()
{
    m_shown->page().setFrameMaster();
    (void)m_shown->taken();
    m_shown->page().paramExitReset({{QStringLiteral("intelligent"), 1},
                                    {QStringLiteral("autoFrameSwicth"), 1},
                                    {QStringLiteral("autoFrameMode"), 1},
                                    {QStringLiteral("PickupSensitivity"), 80},
                                    {QStringLiteral("HorizontalMirror"), 1},
                                    {QStringLiteral("CameraView"), 90},
                                    {QStringLiteral("bright"), 101},
                                    {QStringLiteral("contrast"), 102},
                                    {QStringLiteral("saturation"), 103},
                                    {QStringLiteral("sharpness"), 104}});
    QStringList signalled = m_shown->taken();
    QVERIFY(signalled.removeOne(QStringLiteral("individual on")));
    QCOMPARE(signalled,
             (QStringList{QStringLiteral("intelligent on 1"), QStringLiteral("group off"),
                          QStringLiteral("sensitivityChange 80"), QStringLiteral("mirror on"),
                          QStringLiteral("viewChange 90"), QStringLiteral("bright 101"),
                          QStringLiteral("contrast 102"), QStringLiteral("saturation 103"),
                          QStringLiteral("sharpness 104")}));
    QVERIFY(m_shown->isChecked("rbtnAutoFraming"));
    QVERIFY(m_shown->isChecked("rbtnDivisionMaster"));
    QVERIFY(m_shown->isChecked("btnHeigh"));
    QVERIFY(m_shown->isChecked("btn90"));
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 240));
    QVERIFY(!m_shown->page().isCameraViewEnabled());
    QVERIFY(m_shown->find("btnIntelligent")->isEnabled());
}

void ParamSettingsPageStateTest::discardOfFrameMaster()
{
    m_shown->page().setAutoFraming();
    (void)m_shown->taken();
    m_shown->page().paramExitReset(
        {{QStringLiteral("intelligent"), 1}, {QStringLiteral("frameMaster"), 1}});
    QCOMPARE(m_shown->taken().first(), QStringLiteral("intelligent on 0"));
    // The receiver of that signal selects frame master, which shows its options again.
    QVERIFY(!m_shown->find("intelligentExpandWidget")->isVisible());
    QVERIFY(!m_shown->page().isCameraViewEnabled());
}

void ParamSettingsPageStateTest::discardOfAnEmptyMap()
{
    m_shown->page().setIntelligent(true);
    m_shown->page().setHorizontalMirror(true);
    m_shown->page().setPickupSensitivity(80);
    (void)m_shown->taken();
    m_shown->page().paramExitReset({});
    QCOMPARE(
        m_shown->taken(),
        (QStringList{QStringLiteral("intelligent off 0"), QStringLiteral("sensitivityChange 0"),
                     QStringLiteral("mirror off"), QStringLiteral("viewChange 0"),
                     QStringLiteral("bright 0"), QStringLiteral("contrast 0"),
                     QStringLiteral("saturation 0"), QStringLiteral("sharpness 0")}));
    QVERIFY(m_shown->isChecked("btnLow"));
    QVERIFY(m_shown->page().isCameraViewEnabled());
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 96));
}

void ParamSettingsPageStateTest::discardWithAHighSensitivityChecksNoButton()
{
    m_shown->page().paramExitReset({{QStringLiteral("PickupSensitivity"), 90}});
    for (const char* name : {"btnLow", "btnMiddle", "btnHeigh"})
        QVERIFY(!m_shown->isChecked(name));
    QCOMPARE(m_shown->page().selectedSensitivity(), 0);
    QVERIFY(m_shown->taken().contains(QStringLiteral("sensitivityChange 90")));
}

void ParamSettingsPageStateTest::discardOfAnUnchangedSubModeIsSilentAboutIt()
{
    m_shown->page().paramExitReset(
        {{QStringLiteral("intelligent"), 1}, {QStringLiteral("autoFrameSwicth"), 1}});
    QVERIFY(m_shown->isChecked("rbtnPersonalTrack"));
    QVERIFY(!m_shown->taken().contains(QStringLiteral("group on")));
}

void ParamSettingsPageStateTest::resetToDefaults()
{
    m_shown->page().setPicture(PictureProperty::Brightness, 100);
    m_shown->page().setHorizontalMirror(true);
    m_shown->page().setPickupSensitivity(90);
    (void)m_shown->taken();
    m_shown->page().resetToDefaults();
    QCOMPARE(m_shown->taken(),
             (QStringList{QStringLiteral("bright 128"), QStringLiteral("contrast 128"),
                          QStringLiteral("saturation 128"), QStringLiteral("sharpness 128"),
                          QStringLiteral("viewChange 120"), QStringLiteral("intelligent on 1"),
                          QStringLiteral("group on"), QStringLiteral("sensitivityChange 50"),
                          QStringLiteral("mirror off")}));
    QVERIFY(m_shown->isChecked("btn120"));
    QVERIFY(m_shown->isChecked("rbtnPersonalTrack"));
    QVERIFY(m_shown->isChecked("btnMiddle"));
    QVERIFY(!m_shown->page().isCameraViewEnabled());
    QCOMPARE(m_shown->sizeOf("intelligentSetWidget"), QSize(333, 240));
    QCOMPARE(m_shown->sizeOf("intelligentExpandWidget"), QSize(312, 144));
}

void ParamSettingsPageStateTest::resetLocksTheIntelligentSwitch()
{
    m_shown->page().setSubMode(1);
    m_shown->page().resetToDefaults();
    QCOMPARE(m_shown->taken().filter(QStringLiteral("group on")).size(), 1);
    QVERIFY(!m_shown->find("btnIntelligent")->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(m_shown->find("btnIntelligent")->isEnabled(), 3000);
}

void ParamSettingsPageStateTest::noticeOf4kNeedsBothFlags_data()
{
    QTest::addColumn<bool>("inUse");
    QTest::addColumn<int>("streamOn");
    QTest::addColumn<bool>("shown");
    QTest::newRow("neither") << false << 0 << false;
    QTest::newRow("only in use") << true << 0 << false;
    QTest::newRow("only streaming") << false << 1 << false;
    QTest::newRow("both") << true << 1 << true;
}

void ParamSettingsPageStateTest::noticeOf4kNeedsBothFlags()
{
    QFETCH(const bool, inUse);
    QFETCH(const int, streamOn);
    m_shown->page().set4kInUse(inUse);
    m_shown->page().setStreamOn(streamOn);
    m_shown->page().show4kNotice();
    QTEST(m_shown->find("tipWidgetFor4k")->isVisible(), "shown");
}

void ParamSettingsPageStateTest::noticeOf4kDisappearsAfterItsTime()
{
    m_shown->page().set4kInUse(true);
    m_shown->page().setStreamOn(1);
    QElapsedTimer shown;
    shown.start();
    m_shown->page().show4kNotice();
    QTRY_VERIFY_WITH_TIMEOUT(!m_shown->find("tipWidgetFor4k")->isVisible(), 5000);
    QVERIFY2(shown.elapsed() >= 2370, qPrintable(QString::number(shown.elapsed())));
}

void ParamSettingsPageStateTest::noticeOf4kLiesOverTheLivePreview()
{
    QVERIFY(m_shown->page().previewArea()->winId() != 0);
    QWidget* area = m_shown->page().previewArea();
    auto* picture = new QLabel(area);
    picture->setGeometry(area->rect());
    QPixmap frame(area->size());
    frame.fill(Qt::green);
    picture->setPixmap(frame);
    picture->show();
    m_shown->page().set4kInUse(true);
    m_shown->page().setStreamOn(1);
    m_shown->page().show4kNotice();
    m_shown->page().showPreviewTip(true);
    const QPoint inNotice = m_shown->find("tipWidgetFor4k")->geometry().topLeft() + QPoint(5, 25);
    const QPoint inTip = m_shown->find("previewTip")->geometry().topLeft() + QPoint(5, 25);
    const auto onScreen = [this](const QPoint& point) {
        const QPoint global = m_shown->page().mapToGlobal(point);
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, global.x(), global.y(), 1, 1)
            .toImage()
            .pixelColor(0, 0);
    };
    QTRY_COMPARE(onScreen({5, 195}), QColor(Qt::green));
    QTRY_VERIFY(onScreen(inNotice).green() < 80);
    QTRY_VERIFY(onScreen(inTip).green() < 80);
}

void ParamSettingsPageStateTest::previewAreaShowsAPictureWhileClosed()
{
    const QWidget* area = m_shown->page().previewArea();
    QCOMPARE(area->objectName(), QStringLiteral("previewWidget"));
    QCOMPARE(area->geometry(), QRect(0, 0, 360, 202));
    QCOMPARE(area->styleSheet(), QStringLiteral("image: url(:/images/previewLabel.png)"));
    m_shown->page().setPreviewOpen(true);
    QCOMPARE(area->styleSheet(), QString());
    m_shown->page().setPreviewOpen(false);
    QCOMPARE(area->styleSheet(), QStringLiteral("image: url(:/images/previewLabel.png)"));
}

void ParamSettingsPageStateTest::previewTipIsShownOnDemand()
{
    m_shown->page().showPreviewTip(true);
    QVERIFY(m_shown->find("previewTip")->isVisible());
    m_shown->page().showPreviewTip(false);
    QVERIFY(!m_shown->find("previewTip")->isVisible());
}

void ParamSettingsPageStateTest::reasonForNoPictureIsShownWhole_data()
{
    using Cause = PreviewFailure::Cause;
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, Cause cause, const char* detail) {
        QTest::newRow(name) << PreviewFailureText::of({cause, QString::fromLatin1(detail)});
    };
    row("in use", Cause::InUse, "");
    row("in use by two programs", Cause::InUse, "gst-launch-1.0, wireplumber");
    // The greatest length that a system keeps.
    row("in use by programs with long names", Cause::InUse, "WWWWWWWWWWWWWWW, MMMMMMMMMMMMMMM");
    row("no permission", Cause::NoPermission, "");
    row("part missing", Cause::PartMissing, "videoconvertscale (gstreamer1.0-plugins-base)");
    row("gone", Cause::Gone, "");
    row("other", Cause::Other, "");
    QTest::newRow("installation") << QStringLiteral(
        "The installation process will take a long time. Please wait.");
}

void ParamSettingsPageStateTest::reasonForNoPictureIsShownWhole()
{
    QFETCH(const QString, reason);
    m_shown->page().setPreviewReason(reason);
    const auto* label = m_shown->find<QLabel>("previewReason");
    QVERIFY(label->isVisible());
    QCOMPARE(label->text(), reason);
    QVERIFY2(label->heightForWidth(label->width()) <= label->height(),
             QByteArray::number(label->heightForWidth(label->width())).constData());
    QCOMPARE(label->geometry().bottom(), 199);
    QVERIFY(label->parentWidget()->rect().contains(label->geometry()));
    // The button over the preview stays free.
    QVERIFY(!label->geometry().intersects(QRect(320, 168, 24, 24)));
}

void ParamSettingsPageStateTest::reasonForNoPictureEndsWithItsCamera()
{
    const QWidget* label = m_shown->find("previewReason");
    QVERIFY(!label->isVisible());
    m_shown->page().setPreviewReason(QStringLiteral("reason"));
    QVERIFY(label->isVisible());
    m_shown->page().resetPage(0);
    QVERIFY(!label->isVisible());
}

void ParamSettingsPageStateTest::previewAreaIsANativeWindowOfItsOwn()
{
    const WId window = m_shown->page().previewArea()->winId();
    QCOMPARE(QWidget::find(window), m_shown->page().previewArea());
    // Its ancestors are native windows too: otherwise it would not move with them.
    QVERIFY(m_shown->page().testAttribute(Qt::WA_NativeWindow));
}

void ParamSettingsPageStateTest::entryResetsTabsAndScrolling()
{
    QScrollBar* feature = m_shown->find<QScrollArea>("featureScrollArea")->verticalScrollBar();
    m_shown->page().setAutoFraming();
    QTRY_VERIFY(feature->maximum() > 0);
    feature->setValue(feature->maximum());
    m_shown->click("btnCameraSetting");
    m_shown->page().resetPage(0);
    QVERIFY(m_shown->isChecked("btnFeatureSetting"));
    QVERIFY(!m_shown->isChecked("btnCameraSetting"));
    QVERIFY(m_shown->find("featureSettingPage")->isVisible());
    QCOMPARE(feature->value(), 0);
    QCOMPARE(m_shown->find("transparentWidget")->pos(), QPoint(75, 235));
}

void ParamSettingsPageStateTest::visibleTextsStandAsTheyAre()
{
    const auto button = [this](const char* name) {
        return m_shown->find<QAbstractButton>(name)->text();
    };
    QCOMPARE(button("btnFeatureSetting"), QStringLiteral("Feature Settings"));
    QCOMPARE(button("btnCameraSetting"), QStringLiteral("Camera Settings"));
    QCOMPARE(button("rbtnAutoFraming"), QStringLiteral("Frame Master"));
    QCOMPARE(button("rbtnPersonalTrack"), QStringLiteral("Group Mode"));
    QCOMPARE(button("rbtnDivisionMaster"), QStringLiteral("Individual Mode"));
    QCOMPARE(button("rbtnFrameMaster"), QStringLiteral("Division Master"));
    QCOMPARE(button("btn60"), QStringLiteral("60°"));
    QCOMPARE(button("btnHeigh"), QStringLiteral("High"));
    QCOMPARE(button("btnPramaReset"), QStringLiteral("Default"));
    QCOMPARE(button("btnPramaSava"), QStringLiteral("Save"));
    QCOMPARE(m_shown->text("label_4k_tip"),
             QStringLiteral("Other apps are using 4k images, \"StageFollow AI\" and  “60° FOV\" "
                            "not able to use"));
    QCOMPARE(m_shown->text("previewTip"),
             QStringLiteral("Please close the preview window before using the camera in other "
                            "software"));
}

QTEST_MAIN(ParamSettingsPageStateTest)
#include "ParamSettingsPageStateTest.moc"
