#pragma once

#include <QWidget>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace virtualcamera {

class PanelModel;

/// The list of virtual cameras, with buttons to plug and unplug them.
class CameraListWidget : public QWidget
{
    Q_OBJECT

public:
    explicit CameraListWidget(PanelModel& model, QWidget* parent = nullptr);

private:
    void showCameras();
    void updateButtons();
    void addCamera();
    bool isSelectedOnBus() const;

    PanelModel& m_model;
    QListWidget* m_list;
    QPushButton* m_plug;
    QPushButton* m_unplug;
    QLineEdit* m_name;
    QPushButton* m_add;
};

} // namespace virtualcamera
