#include "PanelWindow.h"

#include "CameraListWidget.h"
#include "FaultWidget.h"
#include "RegisterTable.h"
#include "RequestTable.h"

#include <QGroupBox>
#include <QLabel>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

namespace virtualcamera {

namespace {

constexpr int kRefreshInterval = 300;

const char* const kStyle = R"(
    QMainWindow { background: #eef2f5; }
    QGroupBox { background: #ffffff; border: 1px solid #d5dde3; border-radius: 8px;
                margin-top: 22px; padding: 8px; }
    QGroupBox::title { subcontrol-origin: margin; left: 4px; color: #40525f; font-weight: bold; }
    QPushButton { background: #2f6f8f; color: #ffffff; border: none; border-radius: 5px;
                  padding: 6px 14px; }
    QPushButton:hover { background: #3a84a8; }
    QPushButton:pressed { background: #255a75; }
    QPushButton:focus { outline: 2px solid #f2a65a; }
    QPushButton:disabled { background: #c3ced6; }
    QListWidget, QTableWidget { border: none; background: #ffffff;
                                alternate-background-color: #f5f8fa;
                                selection-background-color: #d6e8f1;
                                selection-color: #1b2a36; }
    QListWidget::item { padding: 6px; border-radius: 5px; }
    QListWidget::item:selected { background: #d6e8f1; color: #1b2a36; }
    QStatusBar { padding-left: 10px; color: #40525f; }
    QHeaderView::section { background: #ffffff; border: none; padding: 4px 8px;
                           color: #6a7a86; }
    QLineEdit, QComboBox { border: 1px solid #c3ced6; border-radius: 5px; padding: 4px 8px;
                           background: #ffffff; }
    QLabel#faultHelp, QLabel#activeFaults { color: #6a7a86; }
)";

QGroupBox* makeBox(const QString& title, const char* name, QWidget* content)
{
    auto* box = new QGroupBox(title);
    box->setObjectName(QString::fromLatin1(name));
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(content);
    return box;
}

} // namespace

PanelWindow::PanelWindow(std::string socket)
    : m_model(std::move(socket))
    , m_state(new QLabel)
    , m_message(new QLabel)
{
    setObjectName("panelWindow");
    setWindowTitle(tr("Virtual cameras"));
    setStyleSheet(QString::fromLatin1(kStyle));
    resize(760, 680);

    auto* left = new QSplitter(Qt::Vertical);
    left->addWidget(makeBox(tr("Cameras"), "camerasBox", new CameraListWidget(m_model)));
    left->addWidget(makeBox(tr("Registers"), "registersBox", new RegisterTable(m_model)));
    left->setStretchFactor(1, 2);
    auto* right = new QWidget;
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    rightLayout->addWidget(makeBox(tr("Faults"), "faultsBox", new FaultWidget(m_model)));
    rightLayout->addWidget(makeBox(tr("Last requests"), "requestsBox", new RequestTable(m_model)),
                           1);
    auto* splitter = new QSplitter;
    splitter->addWidget(left);
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({300, 460});
    splitter->setContentsMargins(10, 4, 10, 6);
    setCentralWidget(splitter);

    m_state->setObjectName("stateLabel");
    m_message->setObjectName("messageLabel");
    m_message->setStyleSheet("color: #b3261e");
    statusBar()->addWidget(m_state);
    statusBar()->addPermanentWidget(m_message);

    connect(&m_model, &PanelModel::refreshed, this, &PanelWindow::showState);
    connect(&m_model, &PanelModel::messageChanged, m_message, &QLabel::setText);
    connect(&m_timer, &QTimer::timeout, &m_model, &PanelModel::refresh);
    m_timer.start(kRefreshInterval);
    m_model.refresh();
}

void PanelWindow::showState()
{
    const VirtualCameraClient::Stats& stats = m_model.stats();
    if (m_model.selected().isEmpty())
        m_state->setText(tr("No camera"));
    else if (stats.streaming)
        m_state->setText(tr("Streaming %1 × %2 %3, %4 frames")
                             .arg(stats.width)
                             .arg(stats.height)
                             .arg(QString::fromStdString(stats.fourcc))
                             .arg(stats.frames));
    else
        m_state->setText(stats.onBus ? tr("Plugged in, not streaming") : tr("Unplugged"));
}

} // namespace virtualcamera
