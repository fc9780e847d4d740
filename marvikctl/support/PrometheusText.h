#pragma once

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

/// Metrics in the text format of Prometheus: one block for each metric, with its help and its type.
class PrometheusText
{
public:
    using Labels = QList<QPair<QString, QString>>;

    /// A gauge, and its place among the blocks.
    void declare(const QString& name, const QString& help);
    /// @pre @p name was declared
    void add(const QString& name, const Labels& labels, double value);

    [[nodiscard]] QString text() const;

private:
    struct Metric
    {
        QString name;
        QString help;
        QStringList samples;
    };

    QList<Metric> m_metrics;
};
