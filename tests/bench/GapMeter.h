#pragma once

#include <chrono>
#include <QTimer>
#include <QWidget>

/// A small window that requests a repaint every millisecond and measures how long it waits for it.
class GapMeter : public QWidget
{
    Q_OBJECT

public:
    explicit GapMeter(QWidget* parent = nullptr);

    void start();
    /// The largest time since start() between two passes of the event loop or two repaints, in
    /// seconds.
    [[nodiscard]] double largestGap() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    using Clock = std::chrono::steady_clock;

    static void note(Clock::time_point& last, Clock::duration& largest);
    void turn();

    QTimer m_timer;
    Clock::time_point m_lastTurn;
    Clock::time_point m_lastPaint;
    Clock::duration m_largest{};
};
