#pragma once

#include <QLabel>
#include <QWidget>

/// The button over the preview that switches the preview. Its owner sets image and flag.
class TransPrewBtn : public QWidget
{
    Q_OBJECT

public:
    explicit TransPrewBtn(QWidget* parent = nullptr);

    [[nodiscard]] bool isPreviewOpen() const { return m_previewOpen; }
    void setPreviewOpen(bool open) { m_previewOpen = open; }

    void setLabelStyle(const QString& styleSheet) { m_label.setStyleSheet(styleSheet); }
    [[nodiscard]] QString labelStyle() const { return m_label.styleSheet(); }

signals:
    void sigHandleCapture();
    void sigShowPreviewTip();
    void sigHidePreviewTip();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLabel m_label;
    bool m_previewOpen = false;
};
