#include "RegisterTable.h"

#include "PanelModel.h"

#include <QHeaderView>
#include <QSignalBlocker>

namespace virtualcamera {

namespace {

enum Column { NameColumn, ValueColumn, StoredColumn, ColumnCount };

constexpr const char* kStoredPrefix = "stored.";

bool isShown(const std::string& name)
{
    return name != "fault" && name.rfind(kStoredPrefix, 0) != 0;
}

} // namespace

RegisterTable::RegisterTable(PanelModel& model, QWidget* parent)
    : QTableWidget(0, ColumnCount, parent)
    , m_model(model)
{
    setObjectName("registerTable");
    setAccessibleName(tr("Registers"));
    setHorizontalHeaderLabels({tr("Register"), tr("Value"), tr("Stored")});
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(24);
    setAlternatingRowColors(true);
    setShowGrid(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(ValueColumn, QHeaderView::Stretch);
    connect(&m_model, &PanelModel::refreshed, this, &RegisterTable::showRegisters);
    connect(this, &QTableWidget::cellChanged, this, [this](int row, int column) {
        if (column == ValueColumn)
            m_model.setRegister(item(row, NameColumn)->text(), item(row, ValueColumn)->text());
    });
}

void RegisterTable::showRegisters()
{
    if (state() == EditingState)
        return;
    const QSignalBlocker blocker(this);
    int row = 0;
    for (const auto& [name, value] : m_model.registers()) {
        if (!isShown(name))
            continue;
        if (row == rowCount()) {
            insertRow(row);
            for (int column = 0; column < ColumnCount; ++column) {
                auto* cell = new QTableWidgetItem;
                if (column != ValueColumn)
                    cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
                setItem(row, column, cell);
            }
        }
        const auto stored = m_model.registers().find(kStoredPrefix + name);
        item(row, NameColumn)->setText(QString::fromStdString(name));
        item(row, ValueColumn)->setText(QString::fromStdString(value));
        item(row, StoredColumn)
            ->setText(stored == m_model.registers().end() ? QString()
                                                          : QString::fromStdString(stored->second));
        ++row;
    }
    setRowCount(row);
}

} // namespace virtualcamera
