#pragma once

#include "BenchModel.h"

#include <QMainWindow>
#include <QTimer>

class QLabel;

namespace virtualcamera {

/// Shows a running bench and lets a person plug, unplug and disturb its cameras.
class PanelWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit PanelWindow(std::string socket);

private:
    void showState();

    BenchModel m_model;
    QTimer m_timer;
    QLabel* m_state;
    QLabel* m_message;
};

} // namespace virtualcamera
