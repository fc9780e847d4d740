#pragma once

#include <memory>
#include <QDialog>
#include <QTimer>

namespace Ui {
class ToastDialog;
}

/// A short message over the middle of the parent window. It hides itself. The main window creates a
/// new one for every message.
class ToastDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ToastDialog(QWidget* parent = nullptr);
    ~ToastDialog() override;

    /// Sizes and places the toast for @p text and hides it after @p msec milliseconds, or after
    /// 1500 when @p msec is below 1. The caller shows it.
    void Start(const QString& text, int msec);

    [[nodiscard]] bool isRunning() const { return m_running; }

signals:
    void sigClose();

private:
    void finish();

    std::unique_ptr<Ui::ToastDialog> ui;
    QTimer m_timer;
    bool m_running = false;
};
