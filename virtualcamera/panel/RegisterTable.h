#pragma once

#include <QTableWidget>

namespace virtualcamera {

class BenchModel;

/// The registers of the selected camera; values can be edited in place.
class RegisterTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit RegisterTable(BenchModel& model, QWidget* parent = nullptr);

private:
    void showRegisters();

    BenchModel& m_model;
};

} // namespace virtualcamera
