#pragma once

#include <QWidget>

class QLineEdit;
class QListWidget;
class QPushButton;

namespace virtualcamera {

class BenchModel;

/// The cameras of the bench, and what plugs them.
class CameraListWidget : public QWidget
{
    Q_OBJECT

public:
    explicit CameraListWidget(BenchModel& model, QWidget* parent = nullptr);

private:
    void showCameras();
    void updateButtons();
    void addCamera();
    bool isSelectedOnBus() const;

    BenchModel& m_model;
    QListWidget* m_list;
    QPushButton* m_plug;
    QPushButton* m_unplug;
    QLineEdit* m_name;
    QPushButton* m_add;
};

} // namespace virtualcamera
