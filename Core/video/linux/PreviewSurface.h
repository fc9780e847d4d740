#pragma once

#include <memory>
#include <QImage>
#include <QWidget>

class PreviewFrames;

/// The video window of a preview: covers its target and paints the newest frame. While it is not
/// visible, it requests no frames.
class PreviewSurface : public QWidget
{
    Q_OBJECT

public:
    /// @param target the widget that the picture is shown in; owns the surface
    PreviewSurface(std::shared_ptr<PreviewFrames> frames, QWidget* target);
    ~PreviewSurface() override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void takeFrame();

    std::shared_ptr<PreviewFrames> m_frames;
    QImage m_frame;
};
