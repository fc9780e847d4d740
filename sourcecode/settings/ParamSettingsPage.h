#pragma once

#include "DeviceSettings.h"
#include "SvtaPagesView.h"
#include "VideoProcAmp.h"

#include <memory>
#include <QMap>
#include <QString>
#include <QTimer>
#include <QWidget>

class QAbstractButton;
class QLabel;
class QSlider;
class SliderInput;
class SwitchLock;

namespace Ui {
class ParamSettingsPage;
}

/// The page with one camera's preview and settings.
///
/// Keeps its controls consistent with each other and turns what the user does into signals; the
/// receiver sends the commands to the camera. The operations that set values from outside emit the
/// signals of those values once each, so that a page set from saved values also sets the camera.
class ParamSettingsPage : public QWidget
{
    Q_OBJECT

public:
    explicit ParamSettingsPage(QWidget* parent = nullptr);
    ~ParamSettingsPage() override;

    /// Where the preview is shown.
    [[nodiscard]] QWidget* previewArea() const;

    /// Shows @p value on the slider of a picture value and emits the slider's signal with it, once.
    /// A value outside the range is shown at the nearer end, and emitted unchanged: it is the value
    /// in the camera.
    void setPicture(PictureProperty property, int value);
    /// The camera has not reported this value: its slider is disabled and says so. setPicture()
    /// ends that.
    void setPictureUnknown(PictureProperty property);

    /// Marks a preset by its SvtaPagesView::ImageMode; another value changes nothing. Emits
    /// nothing.
    void setImageMode(int mode);
    /// Marks 60, 90 or 120 degrees; sigCameraViewChange comes for every value.
    void setCameraView(int degrees);
    /// Marks automatic framing and emits sigRadioButtonChanged(0).
    void setAutoFraming();
    /// Marks frame master and emits sigRadioButtonChanged(1).
    void setFrameMaster();
    /// Shows the intelligent features on or off. Emits nothing.
    void setIntelligent(bool on);
    /// Marks the sub-mode of automatic framing: 0 group, else individual. The signals of the two
    /// radio buttons come only when that changes them.
    void setSubMode(int autoFrameMode);
    /// Marks the button of a sensitivity level, none above 80. Emits nothing.
    void setPickupSensitivity(int sensitivity);
    /// Emits sigCameraHorizontalMirrorSwitch.
    void setHorizontalMirror(bool on);
    /// Shows the value of a setting that has a control of its own. The framing settings have none:
    /// setIntelligent(), setAutoFraming(), setFrameMaster() and setSubMode() show them together.
    void showSetting(DeviceSetting setting, int value);
    /// The camera has not reported this value: its control shows no choice and says so, until a
    /// value is shown or the user chooses one. Emits nothing.
    void setSettingUnknown(DeviceSetting setting);
    /// The same for the switch of the intelligent features.
    void setIntelligentUnknown(bool unknown);

    /// Whether another program takes 4K pictures from the camera, and its "streamon" value.
    void set4kInUse(bool inUse) { m_4kInUse = inUse; }
    void setStreamOn(int streamOn) { m_streamOn = streamOn; }
    /// Shows the notice for 2.5 s, if 4K is in use and streaming.
    void show4kNotice();
    void setPreviewOpen(bool open);
    /// Says in the preview area why there is no picture; an empty @p reason says nothing.
    void setPreviewReason(const QString& reason);
    /// The page shows the settings of the camera that is open.
    void setSettingsAvailable();
    /// The page cannot show them: nothing on it may be changed, and the tool tip says why.
    void setSettingsUnavailable(const QString& reason);
    void showPreviewTip(bool shown);

    /// Whether the field of view may be changed: only while the intelligent features are off.
    [[nodiscard]] bool isCameraViewEnabled() const { return m_cameraViewEnabled; }
    /// Degrees; 0 when no button is checked.
    [[nodiscard]] int selectedCameraView() const;
    /// 30, 50 or 80; 0 when no button is checked.
    [[nodiscard]] int selectedSensitivity() const;

    /// Puts the page into the state that the user sees on entry.
    void resetPage(int tabIndex);
    /// Shows the values of a parameter map and emits their signals; an absent key counts as 0.
    void paramExitReset(const QMap<QString, int>& map);
    /// Shows the factory defaults and emits their signals.
    void resetToDefaults();

signals:
    void sigBrightSliderValueChanged(int value);
    void sigContrastSliderValueChanged(int value);
    void sigSaturationSliderValueChanged(int value);
    void sigSharpnessSliderValueChanged(int value);
    void sigCameraFigureCenterSwitch(bool isChecked);
    void sigCameraHorizontalMirrorSwitch(bool isChecked);
    void sigCameraViewSwitch(bool isChecked); ///< the user has chosen a field of view
    void sigCameraParamSave();                ///< the user wants to save; not confirmed yet
    void sigShowLine();                       ///< the user has asked for the grid with Ctrl+G
    void sigShowParamResetDialog();
    void sigShowParamSaveDialog();
    void sigShowCenterTipDialog();
    void sigCameraViewChange(int degrees);
    void sigPickupSensitivityChange(int sensitivity);
    void sigDoIntelligentSwitch(bool on, int lastIntelligent);
    void sigPickupSensitivitySwitch(int sensitivity); ///< the user has chosen a sensitivity
    void sigRbtnPersonalTrackChecked(bool checked);
    void sigRbtnDivisionMasterChecked(bool checked);
    void sigRadioButtonChanged(int btn_num); ///< 0 automatic framing, else frame master
    void sigSetDeviceImageMode(SvtaPagesView::ImageMode mode);

protected:
    void showEvent(QShowEvent* event) override;

private slots:
    void on_brightSlider_valueChanged(int value);
    void on_contrastSlider_valueChanged(int value);
    void on_saturationSlider_valueChanged(int value);
    void on_sharpnessSlider_valueChanged(int value);
    void setLabBrightValue(int value);
    void setLabContrastValue(int value);
    void setLabSaturationValue(int value);
    void setLabSharpnessValue(int value);
    void on_btnTip_clicked();
    void slotFigureCenteredSwitch(bool isChecked);
    void slotHorizontalMirrorSwitch(bool isChecked);
    void slotTimeout();
    void slotBtnTimeout();

private:
    struct PictureControls
    {
        QSlider* slider;
        QLabel* label;
        void (ParamSettingsPage::*valueChanged)(int);
    };

    enum class OptionsArea {
        Hidden,
        FrameMaster, ///< without the sub-modes of automatic framing
        AutoFraming,
    };

    void placeTabMark(const QPoint& position);
    [[nodiscard]] PictureControls pictureControls(PictureProperty property) const;
    void showPictureLabel(PictureProperty property, int value);
    void reportPicture(PictureProperty property, int value);

    void connectControls();
    void connectSliders();
    void addShortcuts();

    void showFeatureTab();
    void showCameraTab();
    void toggleIntelligent(bool on);
    void chooseFraming(const QAbstractButton* button);
    void chooseImageMode(QAbstractButton* button);
    void chooseCustomImageMode();
    void requestSave();

    void showOptionsArea(OptionsArea area);
    void setCameraViewEnabled(bool enabled);
    void markCameraView(int degrees);

    std::unique_ptr<Ui::ParamSettingsPage> ui;
    SliderInput* m_sliderInput = nullptr;
    QTimer m_4kTimer;
    SwitchLock* m_intelligentLock = nullptr;
    bool m_cameraViewEnabled = true;
    bool m_4kInUse = false;
    int m_streamOn = 0;
    bool m_lastIntelligent = true; ///< what the switch turned off last: automatic framing or not
};
