#pragma once

#include <QMap>
#include <QObject>
#include <QString>

/// Counts how often each widget is painted during its lifetime.
class Repaints : public QObject
{
public:
    Repaints();

    /// Counts by object name, or by class name for a widget without one.
    [[nodiscard]] const QMap<QString, int>& counts() const { return m_counts; }
    [[nodiscard]] int of(const QString& name) const { return m_counts.value(name); }
    [[nodiscard]] int total() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMap<QString, int> m_counts;
};
