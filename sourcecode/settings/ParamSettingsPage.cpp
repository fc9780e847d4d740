#include "ParamSettingsPage.h"

#include "ParameterKeys.h"
#include "SliderInput.h"
#include "SliderScale.h"
#include "ui_ParamSettingsPage.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDebug>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>

namespace {

constexpr int k4kNoticeMilliseconds = 2500;
// The camera needs this long to change between its framing modes.
constexpr int kIntelligentLockMilliseconds = 1000;

constexpr int kCardWidth = 333;
constexpr int kOptionsWidth = 312;

// The mark under the tab that is checked.
constexpr QPoint kFeatureMark(75, 235);
constexpr QPoint kCameraMark(256, 235);

constexpr int kLowSensitivity = 30;
constexpr int kMiddleSensitivity = 50;
constexpr int kHighSensitivity = 80;

void setSlider(QSlider* slider, int minimum, int maximum, int value)
{
    const QSignalBlocker blocker(slider); // the caller emits, also when nothing changes here
    slider->setRange(minimum, maximum);
    slider->setValue(value);
}

// No button of an exclusive group can be unchecked by itself.
void uncheckAll(QButtonGroup* group)
{
    group->setExclusive(false);
    const QList<QAbstractButton*> buttons = group->buttons();
    for (QAbstractButton* button : buttons)
        button->setChecked(false);
    group->setExclusive(true);
}

// The tab key goes to the checked button of a group, the arrow keys from there to the others. Qt
// does so only once the group has had the focus.
void keepOneTabStop(QButtonGroup* group)
{
    const auto update = [group] {
        const QList<QAbstractButton*> buttons = group->buttons();
        for (QAbstractButton* button : buttons)
            button->setFocusPolicy(button->isChecked() || !group->checkedButton() ? Qt::TabFocus
                                                                                  : Qt::NoFocus);
    };
    QObject::connect(group, QOverload<QAbstractButton*, bool>::of(&QButtonGroup::buttonToggled),
                     group, update);
    update();
}

void announce(QWidget* notice)
{
    QAccessibleEvent event(notice, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace

ParamSettingsPage::ParamSettingsPage(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::ParamSettingsPage>())
    , m_sliderInput(new SliderInput(this))
    , m_4kTimer(this)
    , m_unlockTimer(this)
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    // Most controls take no focus from the mouse. After a click the tab key goes on from the page:
    // the stack around the pages, which would get the focus otherwise, swallows every key.
    setFocusPolicy(Qt::ClickFocus);
    // The preview needs a window of its own, and so does what lies over it; the rest does not.
    for (QWidget* widget : {m_ui->transparentWidget, static_cast<QWidget*>(m_ui->previewTip),
                            static_cast<QWidget*>(m_ui->tipWidgetFor4k)})
        widget->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_ui->transparentWidget->raise();

    connectControls();
    connectSliders();
    addShortcuts();
    setPreviewOpen(false);
    setIntelligent(false);
}

ParamSettingsPage::~ParamSettingsPage() = default;

void ParamSettingsPage::connectControls()
{
    const auto clicked = QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked);

    connect(m_ui->btnFeatureSetting, &QPushButton::clicked, this,
            &ParamSettingsPage::showFeatureTab);
    connect(m_ui->btnCameraSetting, &QPushButton::clicked, this, &ParamSettingsPage::showCameraTab);

    connect(m_ui->btnIntelligent, &SvtaSwitchButton::sigToggled, this,
            &ParamSettingsPage::toggleIntelligent);
    connect(m_ui->radioButtonGroup, clicked, this, &ParamSettingsPage::chooseFraming);
    connect(m_ui->rbtnPersonalTrack, &QRadioButton::toggled, this,
            &ParamSettingsPage::sigRbtnPersonalTrackChecked);
    connect(m_ui->rbtnDivisionMaster, &QRadioButton::toggled, this,
            &ParamSettingsPage::sigRbtnDivisionMasterChecked);

    connect(m_ui->viewButtonGroup, clicked, this, [this](const QAbstractButton* button) {
        emit sigCameraViewSwitch(button->isChecked());
    });
    connect(m_ui->btnHorizontalMirror, &SvtaSwitchButton::sigToggled, this,
            &ParamSettingsPage::slotHorizontalMirrorSwitch);
    connect(m_ui->sensitivityButtonGroup, clicked, this,
            [this] { emit sigPickupSensitivitySwitch(selectedSensitivity()); });
    connect(m_ui->imageModeButtonGroup, clicked, this, &ParamSettingsPage::chooseImageMode);

    connect(m_ui->btnPramaReset, &QPushButton::clicked, this,
            &ParamSettingsPage::sigShowParamResetDialog);
    connect(m_ui->btnPramaSava, &QPushButton::clicked, this, &ParamSettingsPage::requestSave);

    for (QButtonGroup* group :
         {m_ui->settingButtonGroup, m_ui->radioButtonGroup, m_ui->subModeButtonGroup,
          m_ui->viewButtonGroup, m_ui->sensitivityButtonGroup, m_ui->imageModeButtonGroup})
        keepOneTabStop(group);

    m_4kTimer.setInterval(k4kNoticeMilliseconds);
    connect(&m_4kTimer, &QTimer::timeout, this, &ParamSettingsPage::slotTimeout);
    m_unlockTimer.setInterval(kIntelligentLockMilliseconds);
    connect(&m_unlockTimer, &QTimer::timeout, this, &ParamSettingsPage::slotBtnTimeout);
}

void ParamSettingsPage::connectSliders()
{
    // During a drag the label goes with the handle; the value comes when the handle is let go.
    connect(m_ui->brightSlider, &QSlider::sliderMoved, this, &ParamSettingsPage::setLabBrightValue);
    connect(m_ui->contrastSlider, &QSlider::sliderMoved, this,
            &ParamSettingsPage::setLabContrastValue);
    connect(m_ui->saturationSlider, &QSlider::sliderMoved, this,
            &ParamSettingsPage::setLabSaturationValue);
    connect(m_ui->sharpnessSlider, &QSlider::sliderMoved, this,
            &ParamSettingsPage::setLabSharpnessValue);

    for (QSlider* slider :
         {m_ui->brightSlider, m_ui->contrastSlider, m_ui->saturationSlider, m_ui->sharpnessSlider})
        m_sliderInput->watch(slider);
    connect(m_sliderInput, &SliderInput::sigUserInput, this,
            &ParamSettingsPage::chooseCustomImageMode);
}

void ParamSettingsPage::addShortcuts()
{
    // The button of the grid floats over the page in a window that takes no focus.
    auto* grid = new QShortcut(QKeySequence(QStringLiteral("Ctrl+G")), this);
    connect(grid, &QShortcut::activated, this, &ParamSettingsPage::sigShowLine);
    auto* save = new QShortcut(QKeySequence(QKeySequence::Save), this);
    connect(save, &QShortcut::activated, this, &ParamSettingsPage::requestSave);
}

QWidget* ParamSettingsPage::previewArea() const
{
    return m_ui->previewWidget;
}

WId ParamSettingsPage::previewWindow() const
{
    return m_ui->previewWidget->winId();
}

void ParamSettingsPage::showEvent(QShowEvent* event)
{
    // The first layout resizes the switches, which takes their knobs to the off position.
    m_ui->btnIntelligent->setChecked(m_ui->btnIntelligent->isChecked());
    m_ui->btnHorizontalMirror->setChecked(m_ui->btnHorizontalMirror->isChecked());
    QWidget::showEvent(event);
}

void ParamSettingsPage::showFeatureTab()
{
    m_ui->stackedWidget->setCurrentWidget(m_ui->featureSettingPage);
    placeTabMark(kFeatureMark);
}

void ParamSettingsPage::showCameraTab()
{
    m_ui->stackedWidget->setCurrentWidget(m_ui->cameraSettingPage);
    placeTabMark(kCameraMark);
}

void ParamSettingsPage::resetPage(int tabIndex)
{
    m_ui->btnFeatureSetting->setChecked(true);
    m_ui->stackedWidget->setCurrentIndex(tabIndex);
    placeTabMark(kFeatureMark);
    m_ui->featureScrollArea->verticalScrollBar()->setValue(0);
    m_ui->cameraScrollArea->verticalScrollBar()->setValue(0);
}

void ParamSettingsPage::toggleIntelligent(bool on)
{
    setCameraViewEnabled(!on);
    if (on) {
        showOptionsArea(OptionsArea::AutoFraming);
    } else {
        showOptionsArea(OptionsArea::Hidden);
        m_lastIntelligent = m_ui->rbtnAutoFraming->isChecked();
    }
    lockIntelligentSwitch();
    emit sigDoIntelligentSwitch(on, m_lastIntelligent ? 1 : 0);
}

void ParamSettingsPage::chooseFraming(const QAbstractButton* button)
{
    const bool autoFraming = button == m_ui->rbtnAutoFraming;
    showOptionsArea(autoFraming ? OptionsArea::AutoFraming : OptionsArea::FrameMaster);
    emit sigRadioButtonChanged(autoFraming ? 0 : 1);
}

void ParamSettingsPage::chooseImageMode(const QAbstractButton* button)
{
    if (button == m_ui->btnStandardMode)
        emit sigSetDeviceImageMode(SvtaPagesView::Standard);
    else if (button == m_ui->btnBrightMode)
        emit sigSetDeviceImageMode(SvtaPagesView::Bright);
    else if (button == m_ui->btnVividMode)
        emit sigSetDeviceImageMode(SvtaPagesView::Vivid);
    else
        emit sigSetDeviceImageMode(SvtaPagesView::Custom);
}

void ParamSettingsPage::chooseCustomImageMode()
{
    m_ui->btnCustomMode->setChecked(true);
    emit sigSetDeviceImageMode(SvtaPagesView::Custom);
}

void ParamSettingsPage::requestSave()
{
    emit sigCameraParamSave();
    emit sigShowParamSaveDialog();
}

void ParamSettingsPage::on_brightSlider_valueChanged(int value)
{
    setLabBrightValue(value);
    emit sigBrightSliderValueChanged(value);
}

void ParamSettingsPage::on_contrastSlider_valueChanged(int value)
{
    setLabContrastValue(value);
    emit sigContrastSliderValueChanged(value);
}

void ParamSettingsPage::on_saturationSlider_valueChanged(int value)
{
    setLabSaturationValue(value);
    emit sigSaturationSliderValueChanged(value);
}

void ParamSettingsPage::on_sharpnessSlider_valueChanged(int value)
{
    setLabSharpnessValue(value);
    emit sigSharpnessSliderValueChanged(value);
}

void ParamSettingsPage::setLabBrightValue(int value)
{
    m_ui->brightChangeLab->setText(SliderScale::labelText(value));
}

void ParamSettingsPage::setLabContrastValue(int value)
{
    m_ui->contrastChangeLab->setText(SliderScale::labelText(value));
}

void ParamSettingsPage::setLabSaturationValue(int value)
{
    m_ui->saturationChangeLab->setText(SliderScale::labelText(value));
}

void ParamSettingsPage::setLabSharpnessValue(int value)
{
    m_ui->sharpnessChangeLab->setText(SliderScale::labelText(value));
}

void ParamSettingsPage::on_btnTip_clicked()
{
    emit sigShowCenterTipDialog();
}

void ParamSettingsPage::slotFigureCenteredSwitch(bool isChecked)
{
    setCameraViewEnabled(!isChecked);
    emit sigCameraFigureCenterSwitch(isChecked);
}

void ParamSettingsPage::slotHorizontalMirrorSwitch(bool isChecked)
{
    emit sigCameraHorizontalMirrorSwitch(isChecked);
}

void ParamSettingsPage::slotTimeout()
{
    m_4kTimer.stop();
    m_ui->tipWidgetFor4k->hide();
}

void ParamSettingsPage::slotBtnTimeout()
{
    m_unlockTimer.stop();
    m_ui->btnIntelligent->setEnabled(true);
    m_ui->btnIntelligent->setToolTip(QString());
    // Someone at the keyboard goes on where the lock has thrown them out, unless they have moved.
    if (m_focusDuringLock && m_focusDuringLock->hasFocus())
        m_ui->btnIntelligent->setFocus(Qt::OtherFocusReason);
    m_focusDuringLock.clear();
}

void ParamSettingsPage::lockIntelligentSwitch()
{
    const bool hadFocus = m_ui->btnIntelligent->hasFocus();
    m_ui->btnIntelligent->setEnabled(false);
    m_ui->btnIntelligent->setToolTip(tr("The camera is switching. Available again in a second."));
    if (hadFocus)
        m_focusDuringLock = focusWidget();
    m_unlockTimer.start();
}

void ParamSettingsPage::setBrightSlider(int minimum, int maximum, int value)
{
    setSlider(m_ui->brightSlider, minimum, maximum, value);
    setLabBrightValue(value);
    emit sigBrightSliderValueChanged(value);
}

void ParamSettingsPage::setContrastSlider(int minimum, int maximum, int value)
{
    setSlider(m_ui->contrastSlider, minimum, maximum, value);
    setLabContrastValue(value);
    emit sigContrastSliderValueChanged(value);
}

void ParamSettingsPage::setSaturationSlider(int minimum, int maximum, int value)
{
    setSlider(m_ui->saturationSlider, minimum, maximum, value);
    setLabSaturationValue(value);
    emit sigSaturationSliderValueChanged(value);
}

void ParamSettingsPage::setSharpnessSlider(int minimum, int maximum, int value)
{
    setSlider(m_ui->sharpnessSlider, minimum, maximum, value);
    setLabSharpnessValue(value);
    emit sigSharpnessSliderValueChanged(value);
}

void ParamSettingsPage::setImageMode(int mode)
{
    switch (mode) {
    case SvtaPagesView::Standard:
        m_ui->btnStandardMode->setChecked(true);
        break;
    case SvtaPagesView::Bright:
        m_ui->btnBrightMode->setChecked(true);
        break;
    case SvtaPagesView::Vivid:
        m_ui->btnVividMode->setChecked(true);
        break;
    case SvtaPagesView::Custom:
        m_ui->btnCustomMode->setChecked(true);
        break;
    default:
        break;
    }
}

void ParamSettingsPage::setCameraView(int degrees)
{
    markCameraView(degrees);
    emit sigCameraViewChange(degrees);
}

void ParamSettingsPage::setAutoFraming()
{
    m_ui->rbtnAutoFraming->setChecked(true);
    showOptionsArea(OptionsArea::AutoFraming);
    emit sigRadioButtonChanged(0);
}

void ParamSettingsPage::setFrameMaster()
{
    m_ui->rbtnFrameMaster->setChecked(true);
    showOptionsArea(OptionsArea::FrameMaster);
    emit sigRadioButtonChanged(1);
}

void ParamSettingsPage::setIntelligent(bool on)
{
    setCameraViewEnabled(!on);
    m_ui->btnIntelligent->setChecked(on);
    if (!on)
        showOptionsArea(OptionsArea::Hidden);
    else if (m_ui->rbtnFrameMaster->isChecked())
        showOptionsArea(OptionsArea::FrameMaster);
    else
        showOptionsArea(OptionsArea::AutoFraming);
}

void ParamSettingsPage::setSubMode(int autoFrameMode)
{
    if (autoFrameMode != 0)
        m_ui->rbtnDivisionMaster->setChecked(true);
    else
        m_ui->rbtnPersonalTrack->setChecked(true);
}

void ParamSettingsPage::setPickupSensitivity(int sensitivity)
{
    if (sensitivity <= kLowSensitivity)
        m_ui->btnLow->setChecked(true);
    else if (sensitivity <= kMiddleSensitivity)
        m_ui->btnMiddle->setChecked(true);
    else if (sensitivity <= kHighSensitivity)
        m_ui->btnHeigh->setChecked(true);
    else
        uncheckAll(m_ui->sensitivityButtonGroup);
}

void ParamSettingsPage::setHorizontalMirror(bool on)
{
    m_ui->btnHorizontalMirror->setChecked(on);
    emit sigCameraHorizontalMirrorSwitch(on);
}

void ParamSettingsPage::show4kNotice()
{
    if (!m_4kInUse || m_streamOn == 0)
        return;
    m_ui->tipWidgetFor4k->show();
    m_ui->tipWidgetFor4k->raise();
    announce(m_ui->label_4k_tip);
    m_4kTimer.start();
}

void ParamSettingsPage::setPreviewOpen(bool open)
{
    m_ui->previewWidget->setStyleSheet(
        open ? QString() : QStringLiteral("image: url(:/images/previewLabel.png)"));
}

void ParamSettingsPage::placeTabMark(const QPoint& position)
{
    m_ui->transparentWidget->move(position);
    update(); // at a fractional scale the mark's old place is a pixel larger than its repaint
}

void ParamSettingsPage::setSettingsAvailable()
{
    m_ui->stackedWidget->setEnabled(true);
    m_ui->stackedWidget->setToolTip(QString());
}

void ParamSettingsPage::setSettingsUnavailable(const QString& reason)
{
    m_ui->stackedWidget->setEnabled(false);
    m_ui->stackedWidget->setToolTip(reason);
}

void ParamSettingsPage::showPreviewTip(bool shown)
{
    m_ui->previewTip->setVisible(shown);
    if (shown)
        m_ui->previewTip->raise();
}

int ParamSettingsPage::selectedCameraView() const
{
    if (m_ui->btn60->isChecked())
        return 60;
    if (m_ui->btn90->isChecked())
        return 90;
    return m_ui->btn120->isChecked() ? 120 : 0;
}

int ParamSettingsPage::selectedSensitivity() const
{
    if (m_ui->btnLow->isChecked())
        return kLowSensitivity;
    if (m_ui->btnMiddle->isChecked())
        return kMiddleSensitivity;
    return m_ui->btnHeigh->isChecked() ? kHighSensitivity : 0;
}

void ParamSettingsPage::paramExitReset(const QMap<QString, int>& map)
{
    using namespace ParameterKeys;

    const int intelligent = map.value(Intelligent);
    qDebug() << "intelligent" << intelligent;
    setIntelligent(intelligent != 0);

    const int autoFraming = map.value(AutoFrameSwitch);
    showOptionsArea(autoFraming != 0 ? OptionsArea::AutoFraming : OptionsArea::Hidden);
    emit sigDoIntelligentSwitch(intelligent != 0, autoFraming);
    if (autoFraming != 0) {
        m_ui->rbtnAutoFraming->setChecked(true);
        setSubMode(map.value(AutoFrameMode));
    }

    const int sensitivity = map.value(PickupSensitivity);
    setPickupSensitivity(sensitivity);
    emit sigPickupSensitivityChange(sensitivity);
    setHorizontalMirror(map.value(HorizontalMirror) == 1);
    setCameraView(map.value(CameraView));

    using namespace SliderScale;
    setBrightSlider(kMinimum, kMaximum, map.value(Bright));
    setContrastSlider(kMinimum, kMaximum, map.value(Contrast));
    setSaturationSlider(kMinimum, kMaximum, map.value(Saturation));
    setSharpnessSlider(kMinimum, kMaximum, map.value(Sharpness));
}

void ParamSettingsPage::resetToDefaults()
{
    using namespace SliderScale;
    setBrightSlider(kMinimum, kMaximum, kDefault);
    setContrastSlider(kMinimum, kMaximum, kDefault);
    setSaturationSlider(kMinimum, kMaximum, kDefault);
    setSharpnessSlider(kMinimum, kMaximum, kDefault);
    setCameraView(120);

    setIntelligent(true);
    showOptionsArea(OptionsArea::AutoFraming);
    lockIntelligentSwitch();
    emit sigDoIntelligentSwitch(true, 1);
    {
        const QSignalBlocker blocker(m_ui->rbtnPersonalTrack); // emitted below, changed or not
        m_ui->rbtnPersonalTrack->setChecked(true);
    }
    emit sigRbtnPersonalTrackChecked(true);

    setPickupSensitivity(kMiddleSensitivity);
    emit sigPickupSensitivityChange(kMiddleSensitivity);
    setHorizontalMirror(false);
}

void ParamSettingsPage::showOptionsArea(OptionsArea area)
{
    const bool autoFraming = area == OptionsArea::AutoFraming;
    m_ui->intelligentExpandWidget->setVisible(area != OptionsArea::Hidden);
    m_ui->autoFramingExpandWidget->setVisible(autoFraming);
    m_ui->intelligentExpandWidget->setFixedSize(kOptionsWidth, autoFraming ? 144 : 96);
    m_ui->rbtnFrameMaster->move(0, autoFraming ? 96 : 48);
    switch (area) {
    case OptionsArea::Hidden:
        m_ui->intelligentSetWidget->setFixedSize(kCardWidth, 96);
        break;
    case OptionsArea::FrameMaster:
        m_ui->intelligentSetWidget->setFixedSize(kCardWidth, 182);
        break;
    case OptionsArea::AutoFraming:
        m_ui->intelligentSetWidget->setFixedSize(kCardWidth, 240);
        break;
    }
    // While the other tab is shown nothing tells the scroll area that its contents want more room,
    // and the cards would lie over each other when the user comes back.
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(m_ui->featureScrollArea, &request);
}

void ParamSettingsPage::setCameraViewEnabled(bool enabled)
{
    m_cameraViewEnabled = enabled;
    const QString reason =
        enabled ? QString() : tr("Turn Stage follow® AI off to change the field of view.");
    const QList<QAbstractButton*> viewButtons = m_ui->viewButtonGroup->buttons();
    for (QAbstractButton* button : viewButtons) {
        button->setEnabled(enabled);
        button->setToolTip(reason);
    }
}

void ParamSettingsPage::markCameraView(int degrees)
{
    if (degrees == 60)
        m_ui->btn60->setChecked(true);
    else if (degrees == 90)
        m_ui->btn90->setChecked(true);
    else if (degrees == 120)
        m_ui->btn120->setChecked(true);
}
