#include "PrometheusText.h"

namespace {

constexpr int kDigits = 10;

QString escaped(QString text)
{
    return text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
        .replace(QLatin1Char('"'), QStringLiteral("\\\""))
        .replace(QLatin1Char('\n'), QStringLiteral("\\n"));
}

} // namespace

void PrometheusText::declare(const QString& name, const QString& help)
{
    m_metrics.append({name, help, {}});
}

void PrometheusText::add(const QString& name, const Labels& labels, double value)
{
    QStringList pairs;
    for (const auto& label : labels)
        pairs << QStringLiteral("%1=\"%2\"").arg(label.first, escaped(label.second));
    const QString sample =
        (pairs.isEmpty() ? name
                         : QStringLiteral("%1{%2}").arg(name, pairs.join(QLatin1Char(',')))) +
        QLatin1Char(' ') + QString::number(value, 'g', kDigits);
    for (Metric& metric : m_metrics) {
        if (metric.name == name)
            metric.samples << sample;
    }
}

QString PrometheusText::text() const
{
    QString text;
    for (const Metric& metric : m_metrics) {
        if (metric.samples.isEmpty())
            continue;
        text += QStringLiteral("# HELP %1 %2\n# TYPE %1 gauge\n").arg(metric.name, metric.help);
        text += metric.samples.join(QLatin1Char('\n')) + QLatin1Char('\n');
    }
    return text;
}
