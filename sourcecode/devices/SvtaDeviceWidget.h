#pragma once

#include "DeviceWidgetInfo.h"

#include <memory>
#include <QWidget>

namespace Ui {
class SvtaDeviceWidget;
}

/// The card of one camera in the device list: picture, name and connection state. The tool tip and
/// the description for screen readers contain the serial number, if it is known, because cameras of
/// one model differ in nothing else. Opens on release of the left button, or by Return, Enter or
/// Space.
class SvtaDeviceWidget : public QWidget
{
    Q_OBJECT

public:
    explicit SvtaDeviceWidget(QWidget* parent = nullptr);
    ~SvtaDeviceWidget() override;

    void setData(const DeviceWidgetInfo& info);
    /// Shows a serial number that the camera has reported after the card was made.
    void setSerialNumber(const QString& sn);
    [[nodiscard]] DeviceWidgetInfo data() const { return mDeviceWidgetInfo; }

signals:
    void sigShowDevicePages();
    void sigDeviceWidgetClicked(DeviceWidgetInfo Info);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void describe();

    std::unique_ptr<Ui::SvtaDeviceWidget> ui;
    DeviceWidgetInfo mDeviceWidgetInfo;
};
