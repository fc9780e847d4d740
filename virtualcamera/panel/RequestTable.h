#pragma once

#include <QTableWidget>

namespace virtualcamera {

class BenchModel;

/// The last requests the selected camera received.
class RequestTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit RequestTable(BenchModel& model, QWidget* parent = nullptr);

private:
    void showRequests();

    BenchModel& m_model;
    quint64 m_lastShown = 0;
    QString m_camera;
};

} // namespace virtualcamera
