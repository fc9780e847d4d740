#include "ParamSettingsPage.h"

#include "LogCategories.h"
#include "ParameterKeys.h"
#include "PictureSettings.h"
#include "SettingControls.h"
#include "Shortcuts.h"
#include "SliderInput.h"
#include "SliderScale.h"
#include "SwitchLock.h"
#include "ui_ParamSettingsPage.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QScrollBar>
#include <QSignalBlocker>

namespace {

constexpr int k4kNoticeTimeoutMs = 2500;

constexpr int kCardWidth = 333;
constexpr int kOptionsWidth = 312;

// The mark under the tab that is checked.
constexpr QPoint kFeatureMark(75, 235);
constexpr QPoint kCameraMark(256, 235);

int factoryDefault(DeviceSetting setting)
{
    return DeviceSettings::row(setting).factoryDefault;
}

void announce(QWidget* notice)
{
    QAccessibleEvent event(notice, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace

ParamSettingsPage::ParamSettingsPage(QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::ParamSettingsPage>())
    , m_sliderInput(new SliderInput(this))
    , m_4kTimer(this)
{
    ui->setupUi(this);
    setAttribute(Qt::WA_StyledBackground);
    // Most controls take no focus from the mouse. After a click the page has the focus, so that the
    // tab key works: the stack around the pages would get it otherwise and swallows every key.
    setFocusPolicy(Qt::ClickFocus);
    // The preview needs a window of its own, and so does what lies over it; the rest does not.
    for (QWidget* widget : {ui->transparentWidget, static_cast<QWidget*>(ui->previewTip),
                            static_cast<QWidget*>(ui->tipWidgetFor4k)})
        widget->setAttribute(Qt::WA_TransparentForMouseEvents);
    ui->transparentWidget->raise();

    connectControls();
    connectSliders();
    addShortcuts();
    setPreviewOpen(false);
    setIntelligent(false);
}

ParamSettingsPage::~ParamSettingsPage() = default;

void ParamSettingsPage::connectControls()
{
    SettingControls::assignValues(ui->viewButtonGroup, DeviceSetting::CameraView,
                                  {ui->btn60, ui->btn90, ui->btn120});
    SettingControls::assignValues(ui->sensitivityButtonGroup, DeviceSetting::PickupSensitivity,
                                  {ui->btnLow, ui->btnMiddle, ui->btnHeigh});
    ui->imageModeButtonGroup->setId(ui->btnStandardMode, SvtaPagesView::Standard);
    ui->imageModeButtonGroup->setId(ui->btnBrightMode, SvtaPagesView::Bright);
    ui->imageModeButtonGroup->setId(ui->btnVividMode, SvtaPagesView::Vivid);
    ui->imageModeButtonGroup->setId(ui->btnCustomMode, SvtaPagesView::Custom);

    const auto clicked = QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked);

    connect(ui->btnFeatureSetting, &QPushButton::clicked, this, &ParamSettingsPage::showFeatureTab);
    connect(ui->btnCameraSetting, &QPushButton::clicked, this, &ParamSettingsPage::showCameraTab);

    connect(ui->btnIntelligent, &SvtaSwitchButton::sigToggled, this,
            &ParamSettingsPage::toggleIntelligent);
    connect(ui->radioButtonGroup, clicked, this, &ParamSettingsPage::chooseFraming);
    connect(ui->rbtnPersonalTrack, &QRadioButton::toggled, this,
            &ParamSettingsPage::sigRbtnPersonalTrackChecked);
    connect(ui->rbtnDivisionMaster, &QRadioButton::toggled, this,
            &ParamSettingsPage::sigRbtnDivisionMasterChecked);

    connect(ui->viewButtonGroup, clicked, this, [this](const QAbstractButton* button) {
        SettingControls::markUnknown(ui->viewButtonGroup, false);
        emit sigCameraViewSwitch(button->isChecked());
    });
    connect(ui->btnHorizontalMirror, &SvtaSwitchButton::sigToggled, this,
            &ParamSettingsPage::slotHorizontalMirrorSwitch);
    connect(ui->sensitivityButtonGroup, clicked, this, [this] {
        SettingControls::markUnknown(ui->sensitivityButtonGroup, false);
        emit sigPickupSensitivitySwitch(selectedSensitivity());
    });
    connect(ui->imageModeButtonGroup, clicked, this, &ParamSettingsPage::chooseImageMode);

    connect(ui->btnPramaReset, &QPushButton::clicked, this,
            &ParamSettingsPage::sigShowParamResetDialog);
    connect(ui->btnPramaSava, &QPushButton::clicked, this, &ParamSettingsPage::requestSave);

    for (QButtonGroup* group :
         {ui->settingButtonGroup, ui->radioButtonGroup, ui->subModeButtonGroup, ui->viewButtonGroup,
          ui->sensitivityButtonGroup, ui->imageModeButtonGroup})
        SettingControls::keepOneTabStop(group);

    m_4kTimer.setInterval(k4kNoticeTimeoutMs);
    connect(&m_4kTimer, &QTimer::timeout, this, &ParamSettingsPage::slotTimeout);
    m_intelligentLock = new SwitchLock(ui->btnIntelligent, this);
    connect(m_intelligentLock, &SwitchLock::sigExpired, this, &ParamSettingsPage::slotBtnTimeout);
}

void ParamSettingsPage::connectSliders()
{
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        QSlider* slider = pictureControls(row.property).slider;
        // During a drag the label follows the handle; the value comes when the handle is released.
        connect(slider, &QSlider::sliderMoved, this,
                [this, property = row.property](int value) { showPictureLabel(property, value); });
        m_sliderInput->watch(slider);
    }
    connect(m_sliderInput, &SliderInput::sigUserInput, this,
            &ParamSettingsPage::chooseCustomImageMode);
}

void ParamSettingsPage::addShortcuts()
{
    // The button of the grid floats over the page in a window that takes no focus.
    Shortcuts::call(this, QKeySequence(QStringLiteral("Ctrl+G")), [this] { emit sigShowLine(); });
    // On both tabs, although only one of them has the buttons.
    Shortcuts::press(this, ui->btnPramaSava, {QKeySequence(QStringLiteral("Ctrl+S"))});
    Shortcuts::press(this, ui->btnPramaReset, {QKeySequence(QStringLiteral("Ctrl+D"))});
}

QWidget* ParamSettingsPage::previewArea() const
{
    return ui->previewWidget;
}

void ParamSettingsPage::showEvent(QShowEvent* event)
{
    // The first layout resizes the switches, which takes their knobs to the off position.
    ui->btnIntelligent->setChecked(ui->btnIntelligent->isChecked());
    ui->btnHorizontalMirror->setChecked(ui->btnHorizontalMirror->isChecked());
    QWidget::showEvent(event);
}

void ParamSettingsPage::showFeatureTab()
{
    ui->stackedWidget->setCurrentWidget(ui->featureSettingPage);
    placeTabMark(kFeatureMark);
}

void ParamSettingsPage::showCameraTab()
{
    ui->stackedWidget->setCurrentWidget(ui->cameraSettingPage);
    placeTabMark(kCameraMark);
}

void ParamSettingsPage::resetPage(int tabIndex)
{
    ui->btnFeatureSetting->setChecked(true);
    ui->stackedWidget->setCurrentIndex(tabIndex);
    placeTabMark(kFeatureMark);
    setPreviewReason({}); // of the camera before
    ui->featureScrollArea->verticalScrollBar()->setValue(0);
    ui->cameraScrollArea->verticalScrollBar()->setValue(0);
}

void ParamSettingsPage::toggleIntelligent(bool on)
{
    setIntelligentUnknown(false);
    setCameraViewEnabled(!on);
    if (on) {
        showOptionsArea(OptionsArea::AutoFraming);
    } else {
        showOptionsArea(OptionsArea::Hidden);
        m_lastIntelligent = ui->rbtnAutoFraming->isChecked();
    }
    m_intelligentLock->lock();
    emit sigDoIntelligentSwitch(on, m_lastIntelligent ? 1 : 0);
}

void ParamSettingsPage::chooseFraming(const QAbstractButton* button)
{
    const bool autoFraming = button == ui->rbtnAutoFraming;
    showOptionsArea(autoFraming ? OptionsArea::AutoFraming : OptionsArea::FrameMaster);
    emit sigRadioButtonChanged(autoFraming ? 0 : 1);
}

void ParamSettingsPage::chooseImageMode(QAbstractButton* button)
{
    emit sigSetDeviceImageMode(
        static_cast<SvtaPagesView::ImageMode>(ui->imageModeButtonGroup->id(button)));
}

void ParamSettingsPage::chooseCustomImageMode()
{
    ui->btnCustomMode->setChecked(true);
    emit sigSetDeviceImageMode(SvtaPagesView::Custom);
}

void ParamSettingsPage::requestSave()
{
    emit sigCameraParamSave();
    emit sigShowParamSaveDialog();
}

void ParamSettingsPage::on_brightSlider_valueChanged(int value)
{
    reportPicture(PictureProperty::Brightness, value);
}

void ParamSettingsPage::on_contrastSlider_valueChanged(int value)
{
    reportPicture(PictureProperty::Contrast, value);
}

void ParamSettingsPage::on_saturationSlider_valueChanged(int value)
{
    reportPicture(PictureProperty::Saturation, value);
}

void ParamSettingsPage::on_sharpnessSlider_valueChanged(int value)
{
    reportPicture(PictureProperty::Sharpness, value);
}

void ParamSettingsPage::setLabBrightValue(int value)
{
    showPictureLabel(PictureProperty::Brightness, value);
}

void ParamSettingsPage::setLabContrastValue(int value)
{
    showPictureLabel(PictureProperty::Contrast, value);
}

void ParamSettingsPage::setLabSaturationValue(int value)
{
    showPictureLabel(PictureProperty::Saturation, value);
}

void ParamSettingsPage::setLabSharpnessValue(int value)
{
    showPictureLabel(PictureProperty::Sharpness, value);
}

/// The slider, the label and the signal of one picture value.
ParamSettingsPage::PictureControls
ParamSettingsPage::pictureControls(PictureProperty property) const
{
    switch (property) {
    case PictureProperty::Contrast:
        return {ui->contrastSlider, ui->contrastChangeLab,
                &ParamSettingsPage::sigContrastSliderValueChanged};
    case PictureProperty::Saturation:
        return {ui->saturationSlider, ui->saturationChangeLab,
                &ParamSettingsPage::sigSaturationSliderValueChanged};
    case PictureProperty::Sharpness:
        return {ui->sharpnessSlider, ui->sharpnessChangeLab,
                &ParamSettingsPage::sigSharpnessSliderValueChanged};
    case PictureProperty::Brightness:
        break;
    }
    return {ui->brightSlider, ui->brightChangeLab, &ParamSettingsPage::sigBrightSliderValueChanged};
}

void ParamSettingsPage::showPictureLabel(PictureProperty property, int value)
{
    pictureControls(property).label->setText(SliderScale::labelText(value));
}

void ParamSettingsPage::reportPicture(PictureProperty property, int value)
{
    showPictureLabel(property, value);
    emit(this->*pictureControls(property).valueChanged)(value);
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
    SettingControls::markUnknown(ui->btnHorizontalMirror, false);
    emit sigCameraHorizontalMirrorSwitch(isChecked);
}

void ParamSettingsPage::slotTimeout()
{
    m_4kTimer.stop();
    ui->tipWidgetFor4k->hide();
}

void ParamSettingsPage::slotBtnTimeout()
{
    m_intelligentLock->unlock();
}

void ParamSettingsPage::setPicture(PictureProperty property, int value)
{
    QSlider* slider = pictureControls(property).slider;
    {
        const QSignalBlocker blocker(slider); // reported below, also when nothing changes here
        slider->setRange(PictureSettings::kMinimum, PictureSettings::kMaximum);
        slider->setValue(value);
    }
    slider->setEnabled(true);
    SettingControls::markUnknown(slider, false);
    reportPicture(property, value);
}

void ParamSettingsPage::setPictureUnknown(PictureProperty property)
{
    const PictureControls controls = pictureControls(property);
    controls.slider->setEnabled(false);
    controls.label->clear();
    SettingControls::markUnknown(controls.slider, true);
}

void ParamSettingsPage::setImageMode(int mode)
{
    if (QAbstractButton* button = ui->imageModeButtonGroup->button(mode))
        button->setChecked(true);
}

void ParamSettingsPage::setCameraView(int degrees)
{
    SettingControls::markUnknown(ui->viewButtonGroup, false);
    markCameraView(degrees);
    emit sigCameraViewChange(degrees);
}

void ParamSettingsPage::setAutoFraming()
{
    ui->rbtnAutoFraming->setChecked(true);
    showOptionsArea(OptionsArea::AutoFraming);
    emit sigRadioButtonChanged(0);
}

void ParamSettingsPage::setFrameMaster()
{
    ui->rbtnFrameMaster->setChecked(true);
    showOptionsArea(OptionsArea::FrameMaster);
    emit sigRadioButtonChanged(1);
}

void ParamSettingsPage::setIntelligent(bool on)
{
    setCameraViewEnabled(!on);
    ui->btnIntelligent->setChecked(on);
    if (!on)
        showOptionsArea(OptionsArea::Hidden);
    else if (ui->rbtnFrameMaster->isChecked())
        showOptionsArea(OptionsArea::FrameMaster);
    else
        showOptionsArea(OptionsArea::AutoFraming);
}

void ParamSettingsPage::setSubMode(int autoFrameMode)
{
    if (autoFrameMode != 0)
        ui->rbtnDivisionMaster->setChecked(true);
    else
        ui->rbtnPersonalTrack->setChecked(true);
}

void ParamSettingsPage::setPickupSensitivity(int sensitivity)
{
    SettingControls::markUnknown(ui->sensitivityButtonGroup, false);
    // A camera may report any level: each button stands for all levels up to its own.
    for (const DeviceSettingValue& level :
         DeviceSettings::row(DeviceSetting::PickupSensitivity).values) {
        if (sensitivity <= level.value) {
            ui->sensitivityButtonGroup->button(level.value)->setChecked(true);
            return;
        }
    }
    SettingControls::uncheckAll(ui->sensitivityButtonGroup);
}

void ParamSettingsPage::setHorizontalMirror(bool on)
{
    SettingControls::markUnknown(ui->btnHorizontalMirror, false);
    ui->btnHorizontalMirror->setChecked(on);
    emit sigCameraHorizontalMirrorSwitch(on);
}

void ParamSettingsPage::showSetting(DeviceSetting setting, int value)
{
    switch (setting) {
    case DeviceSetting::PickupSensitivity:
        setPickupSensitivity(value);
        break;
    case DeviceSetting::CameraView:
        setCameraView(value);
        break;
    case DeviceSetting::HorizontalMirror:
        setHorizontalMirror(value == 1);
        break;
    case DeviceSetting::AutoFrameSwitch:
    case DeviceSetting::FrameMaster:
    case DeviceSetting::AutoFrameMode:
        break;
    }
}

void ParamSettingsPage::setSettingUnknown(DeviceSetting setting)
{
    switch (setting) {
    case DeviceSetting::PickupSensitivity:
        SettingControls::uncheckAll(ui->sensitivityButtonGroup);
        SettingControls::markUnknown(ui->sensitivityButtonGroup, true);
        break;
    case DeviceSetting::CameraView:
        SettingControls::uncheckAll(ui->viewButtonGroup);
        SettingControls::markUnknown(ui->viewButtonGroup, true);
        break;
    case DeviceSetting::HorizontalMirror:
        ui->btnHorizontalMirror->setChecked(false);
        SettingControls::markUnknown(ui->btnHorizontalMirror, true);
        break;
    case DeviceSetting::AutoFrameSwitch:
    case DeviceSetting::FrameMaster:
    case DeviceSetting::AutoFrameMode:
        break;
    }
}

void ParamSettingsPage::setIntelligentUnknown(bool unknown)
{
    SettingControls::markUnknown(ui->btnIntelligent, unknown);
}

void ParamSettingsPage::show4kNotice()
{
    if (!m_4kInUse || m_streamOn == 0)
        return;
    ui->tipWidgetFor4k->show();
    ui->tipWidgetFor4k->raise();
    announce(ui->label_4k_tip);
    m_4kTimer.start();
}

void ParamSettingsPage::setPreviewOpen(bool open)
{
    ui->previewWidget->setStyleSheet(
        open ? QString() : QStringLiteral("image: url(:/images/previewLabel.png)"));
}

void ParamSettingsPage::setPreviewReason(const QString& reason)
{
    ui->previewReason->say(reason);
}

void ParamSettingsPage::placeTabMark(const QPoint& position)
{
    ui->transparentWidget->move(position);
    update(); // at a fractional scale the mark covers one pixel more than Qt repaints
}

void ParamSettingsPage::setSettingsAvailable()
{
    ui->stackedWidget->setEnabled(true);
    ui->stackedWidget->setToolTip(QString());
}

void ParamSettingsPage::setSettingsUnavailable(const QString& reason)
{
    ui->stackedWidget->setEnabled(false);
    ui->stackedWidget->setToolTip(reason);
}

void ParamSettingsPage::showPreviewTip(bool shown)
{
    ui->previewTip->setVisible(shown);
    if (shown)
        ui->previewTip->raise();
}

int ParamSettingsPage::selectedCameraView() const
{
    return SettingControls::checkedValue(ui->viewButtonGroup);
}

int ParamSettingsPage::selectedSensitivity() const
{
    return SettingControls::checkedValue(ui->sensitivityButtonGroup);
}

void ParamSettingsPage::paramExitReset(const QMap<QString, int>& map)
{
    using namespace ParameterKeys;

    const int intelligent = map.value(Intelligent);
    qCDebug(settingsLog) << "intelligent" << intelligent;
    setIntelligent(intelligent != 0);

    const int autoFraming = map.value(AutoFrameSwitch);
    showOptionsArea(autoFraming != 0 ? OptionsArea::AutoFraming : OptionsArea::Hidden);
    emit sigDoIntelligentSwitch(intelligent != 0, autoFraming);
    if (autoFraming != 0) {
        ui->rbtnAutoFraming->setChecked(true);
        setSubMode(map.value(AutoFrameMode));
    }

    const int sensitivity = map.value(PickupSensitivity);
    setPickupSensitivity(sensitivity);
    emit sigPickupSensitivityChange(sensitivity);
    setHorizontalMirror(map.value(HorizontalMirror) == 1);
    setCameraView(map.value(CameraView));

    for (const PictureSettingRow& row : PictureSettings::rows())
        setPicture(row.property, map.value(row.key));
}

void ParamSettingsPage::resetToDefaults()
{
    for (const PictureSettingRow& row : PictureSettings::rows())
        setPicture(row.property, PictureSettings::kFactoryDefault);
    setCameraView(factoryDefault(DeviceSetting::CameraView));

    setIntelligentUnknown(false);
    setIntelligent(true);
    showOptionsArea(OptionsArea::AutoFraming);
    m_intelligentLock->lock();
    emit sigDoIntelligentSwitch(true, 1);
    {
        const QSignalBlocker blocker(ui->rbtnPersonalTrack); // emitted below, changed or not
        ui->rbtnPersonalTrack->setChecked(true);
    }
    emit sigRbtnPersonalTrackChecked(true);

    const int sensitivity = factoryDefault(DeviceSetting::PickupSensitivity);
    setPickupSensitivity(sensitivity);
    emit sigPickupSensitivityChange(sensitivity);
    setHorizontalMirror(factoryDefault(DeviceSetting::HorizontalMirror) != 0);
}

void ParamSettingsPage::showOptionsArea(OptionsArea area)
{
    const bool autoFraming = area == OptionsArea::AutoFraming;
    ui->intelligentExpandWidget->setVisible(area != OptionsArea::Hidden);
    ui->autoFramingExpandWidget->setVisible(autoFraming);
    ui->intelligentExpandWidget->setFixedSize(kOptionsWidth, autoFraming ? 144 : 96);
    ui->rbtnFrameMaster->move(0, autoFraming ? 96 : 48);
    switch (area) {
    case OptionsArea::Hidden:
        ui->intelligentSetWidget->setFixedSize(kCardWidth, 96);
        break;
    case OptionsArea::FrameMaster:
        ui->intelligentSetWidget->setFixedSize(kCardWidth, 182);
        break;
    case OptionsArea::AutoFraming:
        ui->intelligentSetWidget->setFixedSize(kCardWidth, 240);
        break;
    }
    // While the other tab is shown, the scroll area does not notice that its contents need more
    // room, and the cards would overlap when the user comes back.
    QEvent request(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(ui->featureScrollArea, &request);
}

void ParamSettingsPage::setCameraViewEnabled(bool enabled)
{
    m_cameraViewEnabled = enabled;
    const QString reason =
        enabled ? QString() : tr("Turn Stage follow® AI off to change the field of view.");
    const QList<QAbstractButton*> viewButtons = ui->viewButtonGroup->buttons();
    for (QAbstractButton* button : viewButtons) {
        button->setEnabled(enabled);
        button->setToolTip(reason);
    }
}

void ParamSettingsPage::markCameraView(int degrees)
{
    if (QAbstractButton* button = ui->viewButtonGroup->button(degrees))
        button->setChecked(true);
}
