#pragma once

#include <QMap>
#include <QObject>
#include <QString>

/// Counts which widgets are painted, and how often, as long as it lives.
class Repaints : public QObject
{
public:
    Repaints();

    /// By object name, of a widget without one by class name.
    [[nodiscard]] const QMap<QString, int>& counts() const { return m_counts; }
    [[nodiscard]] int of(const QString& name) const { return m_counts.value(name); }
    [[nodiscard]] int total() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QMap<QString, int> m_counts;
};
