#include "FaultWidget.h"

#include "core/Fault.h"
#include "PanelModel.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace virtualcamera {

namespace {

QString text(std::string_view view)
{
    return QString::fromUtf8(view.data(), static_cast<int>(view.size()));
}

} // namespace

FaultWidget::FaultWidget(PanelModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_fault(new QComboBox(this))
    , m_arguments(new QLineEdit(this))
    , m_help(new QLabel(this))
    , m_active(new QLabel(this))
{
    m_fault->setObjectName("faultCombo");
    m_fault->setAccessibleName(tr("Fault"));
    for (const FaultInfo& info : faultInfos())
        m_fault->addItem(text(info.name));
    m_arguments->setObjectName("faultArguments");
    m_arguments->setAccessibleName(tr("Arguments of the fault"));
    m_help->setObjectName("faultHelp");
    m_active->setObjectName("activeFaults");
    m_active->setWordWrap(true);
    auto* apply = new QPushButton(tr("Apply"), this);
    apply->setObjectName("applyFaultButton");
    apply->setAccessibleName(tr("Apply the fault"));
    auto* clear = new QPushButton(tr("Clear all"), this);
    clear->setObjectName("clearFaultsButton");
    clear->setAccessibleName(tr("Clear all faults"));

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_fault, 0, 0);
    layout->addWidget(m_arguments, 0, 1);
    layout->addWidget(apply, 0, 2);
    layout->addWidget(clear, 0, 3);
    layout->addWidget(m_help, 1, 0, 1, 4);
    layout->addWidget(m_active, 2, 0, 1, 4);
    layout->setColumnStretch(1, 1);

    connect(m_fault, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &FaultWidget::showFault);
    const auto applyFault = [this] {
        m_model.applyFault(m_fault->currentText() + ' ' + m_arguments->text());
    };
    connect(apply, &QPushButton::clicked, this, applyFault);
    connect(m_arguments, &QLineEdit::returnPressed, this, applyFault);
    connect(clear, &QPushButton::clicked, this, [this] { m_model.clearFaults(); });
    connect(&m_model, &PanelModel::refreshed, this, &FaultWidget::showActive);
    showFault();
    showActive();
}

void FaultWidget::showFault()
{
    const FaultInfo& info = faultInfos()[static_cast<std::size_t>(m_fault->currentIndex())];
    QStringList hints;
    for (const std::string_view argument : info.arguments)
        hints << '<' + text(argument) + '>';
    hints << "from=1"
          << "times=1"
          << "cmd=0x5001";
    m_arguments->setPlaceholderText(hints.join(' '));
    m_help->setText(tr("The camera: %1.").arg(text(info.help)));
}

void FaultWidget::showActive()
{
    QStringList active;
    const auto range = m_model.registers().equal_range("fault");
    for (auto each = range.first; each != range.second; ++each)
        active << QString::fromStdString(each->second);
    m_active->setText(active.isEmpty() ? tr("No fault is active.")
                                       : tr("Active: %1").arg(active.join("; ")));
}

} // namespace virtualcamera
