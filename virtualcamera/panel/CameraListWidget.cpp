#include "CameraListWidget.h"

#include "PanelModel.h"

#include <algorithm>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace virtualcamera {

namespace {

constexpr int kIdRole = Qt::UserRole;

QPushButton* makeButton(const QString& text, const char* name, QWidget* parent)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAccessibleName(text);
    return button;
}

} // namespace

CameraListWidget::CameraListWidget(PanelModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_list(new QListWidget(this))
    , m_plug(makeButton(tr("Plug in"), "plugButton", this))
    , m_unplug(makeButton(tr("Unplug"), "unplugButton", this))
    , m_name(new QLineEdit(this))
    , m_add(makeButton(tr("Add camera"), "addCameraButton", this))
{
    m_list->setObjectName("cameraList");
    m_list->setAccessibleName(tr("Cameras"));
    m_name->setObjectName("newCameraName");
    m_name->setAccessibleName(tr("Name of the new camera"));
    m_name->setPlaceholderText(tr("NOVA EDGE"));

    auto* plugRow = new QHBoxLayout;
    plugRow->addWidget(m_plug);
    plugRow->addWidget(m_unplug);
    auto* addRow = new QHBoxLayout;
    addRow->addWidget(m_name);
    addRow->addWidget(m_add);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    layout->addLayout(plugRow);
    layout->addLayout(addRow);

    connect(&m_model, &PanelModel::refreshed, this, &CameraListWidget::showCameras);
    connect(m_list, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item)
            m_model.select(item->data(kIdRole).toString());
    });
    connect(m_plug, &QPushButton::clicked, this, [this] { m_model.plug(m_model.selected()); });
    connect(m_unplug, &QPushButton::clicked, this, [this] { m_model.unplug(m_model.selected()); });
    connect(m_add, &QPushButton::clicked, this, &CameraListWidget::addCamera);
    connect(m_name, &QLineEdit::returnPressed, this, &CameraListWidget::addCamera);
    updateButtons();
}

void CameraListWidget::showCameras()
{
    const QSignalBlocker blocker(m_list);
    const auto& cameras = m_model.cameras();
    while (m_list->count() > static_cast<int>(cameras.size()))
        delete m_list->takeItem(m_list->count() - 1);
    while (m_list->count() < static_cast<int>(cameras.size()))
        m_list->addItem(QString());
    for (int i = 0; i < m_list->count(); ++i) {
        const auto& camera = cameras[static_cast<std::size_t>(i)];
        QListWidgetItem* item = m_list->item(i);
        const QString id = QString::fromStdString(camera.id);
        const QString state = camera.onBus ? tr("plugged in") : tr("unplugged");
        item->setText(tr("%1  (%2)\n%3, %4")
                          .arg(QString::fromStdString(camera.card), id,
                               QString::fromStdString(camera.serial).left(40), state));
        item->setForeground(camera.onBus ? QColor(0x1B2A36) : QColor(0x8A97A1));
        item->setData(kIdRole, id);
        if (id == m_model.selected())
            m_list->setCurrentItem(item);
    }
    updateButtons();
}

bool CameraListWidget::isSelectedOnBus() const
{
    const std::string id = m_model.selected().toStdString();
    const auto& cameras = m_model.cameras();
    return std::any_of(cameras.begin(), cameras.end(),
                       [&id](const auto& camera) { return camera.id == id && camera.onBus; });
}

void CameraListWidget::updateButtons()
{
    const bool hasCamera = !m_model.selected().isEmpty();
    m_plug->setEnabled(hasCamera && !isSelectedOnBus());
    m_unplug->setEnabled(hasCamera && isSelectedOnBus());
}

void CameraListWidget::addCamera()
{
    const QString name = m_name->text().isEmpty() ? m_name->placeholderText() : m_name->text();
    const auto& cameras = m_model.cameras();
    int number = 1;
    const auto isTaken = [&cameras, &number] {
        const std::string id = "camera" + std::to_string(number);
        return std::any_of(cameras.begin(), cameras.end(),
                           [&id](const auto& camera) { return camera.id == id; });
    };
    while (isTaken())
        ++number;
    m_model.addCamera(QStringLiteral("camera%1").arg(number), name);
    m_name->clear();
}

} // namespace virtualcamera
