#pragma once

#include <memory>
#include <QDialog>
#include <QTimer>

namespace Ui {
class ToastDialog;
}

/// A short message over the middle of the parent window that goes away by itself. The main window
/// makes a new one for every message.
class ToastDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ToastDialog(QWidget* parent = nullptr);
    ~ToastDialog() override;

    /// Sizes and places the toast for @p text and lets it end after @p msec milliseconds, or after
    /// 1500 when @p msec is below 1. Showing it is the caller's.
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
