#include "PreviewOverlays.h"

#include "TransparentBtn.h"
#include "TransparentWidget.h"
#include "TransPrewBtn.h"

#include <QWindow>

namespace {

constexpr QPoint kGridOffset(0, 80);
constexpr QPoint kGridBtnOffset(284, 248);
constexpr QPoint kPreviewBtnOffset(320, 248);

const char* const kGridOffImage = "image: url(:/images/jiugongge.svg)";
const char* const kGridOnImage = "image: url(:/images/bandengfeng.svg)";
const char* const kPreviewOpenImage = "image: url(:/images/previewopen.svg)";
const char* const kPreviewClosedImage = "image: url(:/images/previewclose.svg)";

void moveTo(QWidget* window, const QPoint& position)
{
    window->move(position);
    // The same position is at other pixels after a change of the scale.
    if (QWindow* native = window->windowHandle())
        native->setPosition(position);
}

} // namespace

PreviewOverlays::PreviewOverlays(QWidget* window)
    : m_grid(std::make_unique<TransparentWidget>(window))
    , m_gridBtn(std::make_unique<TransparentBtn>(window))
    , m_previewBtn(std::make_unique<TransPrewBtn>(window))
{
    hide();
}

PreviewOverlays::~PreviewOverlays() = default;

bool PreviewOverlays::isPreviewOpen() const
{
    return m_previewBtn->isPreviewOpen();
}

void PreviewOverlays::setPreviewOpen(bool open)
{
    m_previewBtn->setPreviewOpen(open);
}

void PreviewOverlays::place(const QPoint& origin)
{
    moveTo(m_grid.get(), origin + kGridOffset);
    moveTo(m_gridBtn.get(), origin + kGridBtnOffset);
    moveTo(m_previewBtn.get(), origin + kPreviewBtnOffset);
}

void PreviewOverlays::hide()
{
    hideButtons();
    m_grid->hide();
    m_gridBtn->setLabelStyle(QString::fromLatin1(kGridOffImage));
}

void PreviewOverlays::hideButtons()
{
    m_gridBtn->hide();
    m_previewBtn->hide();
}

void PreviewOverlays::restore(const QPoint& origin)
{
    place(origin);
    setGridVisible(m_gridOn && isPreviewOpen());
    m_gridBtn->setVisible(isPreviewOpen());
    m_previewBtn->show();
}

void PreviewOverlays::setRunning(bool running)
{
    setPreviewOpen(running);
    m_previewBtn->setLabelStyle(
        QString::fromLatin1(running ? kPreviewOpenImage : kPreviewClosedImage));
    if (!running) {
        switchGridOff();
        m_gridBtn->hide();
    }
}

void PreviewOverlays::showRunning(bool running)
{
    setRunning(running);
    if (running) {
        m_gridBtn->show();
        m_gridBtn->raise();
    }
    m_previewBtn->show();
    m_previewBtn->raise();
}

void PreviewOverlays::showGrid()
{
    setGridVisible(m_gridOn);
}

void PreviewOverlays::toggleGrid()
{
    m_gridOn = !m_gridOn;
    setGridVisible(m_gridOn);
}

void PreviewOverlays::switchGridOff()
{
    if (!m_gridOn)
        return;
    m_gridOn = false;
    setGridVisible(false);
}

void PreviewOverlays::setGridVisible(bool visible)
{
    m_grid->setVisible(visible);
    m_gridBtn->setLabelStyle(QString::fromLatin1(visible ? kGridOnImage : kGridOffImage));
    if (!visible)
        return;
    // The grid covers the whole picture. The buttons must be above it, or they cannot be clicked.
    m_gridBtn->raise();
    m_previewBtn->raise();
}
