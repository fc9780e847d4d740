#pragma once

#include <QTableWidget>

namespace virtualcamera {

class PanelModel;

/// The last requests the selected camera received.
class RequestTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit RequestTable(PanelModel& model, QWidget* parent = nullptr);

private:
    void showRequests();

    PanelModel& m_model;
    quint64 m_lastShown = 0;
    QString m_camera;
};

} // namespace virtualcamera
