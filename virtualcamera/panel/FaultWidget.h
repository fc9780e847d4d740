#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;

namespace virtualcamera {

class PanelModel;

/// Sets a fault of the selected camera.
class FaultWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FaultWidget(PanelModel& model, QWidget* parent = nullptr);

private:
    void showFault();
    void showActive();

    PanelModel& m_model;
    QComboBox* m_fault;
    QLineEdit* m_arguments;
    QLabel* m_help;
    QLabel* m_active;
};

} // namespace virtualcamera
