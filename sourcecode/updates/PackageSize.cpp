#include "PackageSize.h"

#include "LogCategories.h"

namespace {

constexpr int kUnitLength = 2;
constexpr float kWhole = 100;

QString oneDecimal(float value)
{
    return QString::number(static_cast<double>(value), 'f', 1);
}

} // namespace

PackageSize::PackageSize(const QString& text)
    : m_unit(text.right(kUnitLength))
{
    const QString number = text.chopped(qMin(kUnitLength, text.size()));
    qCDebug(updateLog) << number;
    m_total = number.toFloat();
}

QString PackageSize::progressText(int percent) const
{
    const float current = static_cast<float>(percent) / kWhole * m_total;
    qCDebug(updateLog) << "current =" << current;
    return oneDecimal(current) + QLatin1Char('/') + oneDecimal(m_total) + m_unit;
}
