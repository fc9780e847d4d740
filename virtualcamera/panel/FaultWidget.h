#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;

namespace virtualcamera {

class BenchModel;

/// Chooses a fault for the selected camera.
class FaultWidget : public QWidget
{
    Q_OBJECT

public:
    explicit FaultWidget(BenchModel& model, QWidget* parent = nullptr);

private:
    void showFault();
    void showActive();

    BenchModel& m_model;
    QComboBox* m_fault;
    QLineEdit* m_arguments;
    QLabel* m_help;
    QLabel* m_active;
};

} // namespace virtualcamera
