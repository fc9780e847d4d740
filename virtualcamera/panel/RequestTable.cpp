#include "RequestTable.h"

#include "PanelModel.h"

#include <algorithm>
#include <QHeaderView>

namespace virtualcamera {

namespace {

QStringList cellsOf(const VirtualCameraClient::LogEntry& entry)
{
    const QByteArray payload(reinterpret_cast<const char*>(entry.payload.data()),
                             static_cast<int>(std::min<std::size_t>(entry.payload.size(), 16)));
    QString payloadText = QString::fromLatin1(payload.toHex(' '));
    if (entry.payload.size() > 16)
        payloadText += RequestTable::tr(" … %1 bytes").arg(entry.payload.size());
    return {QString::number(entry.sequence),
            QStringLiteral("0x%1").arg(entry.command, 4, 16, QLatin1Char('0')),
            QString::number(entry.dataStatus),
            QString::number(entry.packNumber),
            payloadText,
            QString::fromStdString(entry.verdict),
            entry.answerStatus ? QString::number(*entry.answerStatus) : QStringLiteral("–")};
}

} // namespace

RequestTable::RequestTable(PanelModel& model, QWidget* parent)
    : QTableWidget(parent)
    , m_model(model)
{
    setObjectName("requestTable");
    setAccessibleName(tr("Last requests"));
    const QStringList headers{tr("No."),     tr("Command"), tr("Data status"), tr("Packet"),
                              tr("Payload"), tr("Verdict"), tr("Answer")};
    setColumnCount(headers.size());
    setHorizontalHeaderLabels(headers);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(24);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setAlternatingRowColors(true);
    setShowGrid(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(4, QHeaderView::Stretch);
    connect(&m_model, &PanelModel::refreshed, this, &RequestTable::showRequests);
}

void RequestTable::showRequests()
{
    const auto& requests = m_model.requests();
    const quint64 newest = requests.empty() ? 0 : requests.back().sequence;
    if (m_camera == m_model.selected() && newest == m_lastShown &&
        rowCount() == static_cast<int>(requests.size()))
        return;
    m_camera = m_model.selected();
    m_lastShown = newest;
    setRowCount(static_cast<int>(requests.size()));
    for (int row = 0; row < rowCount(); ++row) {
        const auto& entry = requests[static_cast<std::size_t>(row)];
        const QStringList cells = cellsOf(entry);
        for (int column = 0; column < cells.size(); ++column) {
            auto* cell = new QTableWidgetItem(cells[column]);
            if (entry.verdict != "ok")
                cell->setForeground(QColor(0xB3261E));
            setItem(row, column, cell);
        }
    }
    scrollToBottom();
}

} // namespace virtualcamera
