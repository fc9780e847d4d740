#pragma once

#include "PanelModel.h"

#include <QMainWindow>
#include <QTimer>

class QLabel;

namespace virtualcamera {

/// Shows the virtual cameras and lets a person plug, unplug and disturb them.
class PanelWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit PanelWindow(std::string socket);

private:
    void showState();

    PanelModel m_model;
    QTimer m_timer;
    QLabel* m_state;
    QLabel* m_message;
};

} // namespace virtualcamera
