#pragma once

#include <QTableWidget>

namespace virtualcamera {

class PanelModel;

/// The registers of the selected camera; values can be edited in place.
class RegisterTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit RegisterTable(PanelModel& model, QWidget* parent = nullptr);

private:
    void showRegisters();

    PanelModel& m_model;
};

} // namespace virtualcamera
