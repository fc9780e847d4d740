#include "SettingsModelTexts.h"

#include <algorithm>

using Model = SettingsModel;

namespace {

QString listed(const Model::Picture& picture)
{
    QStringList numbers;
    for (const int value : picture)
        numbers << QString::number(value);
    return numbers.join(QLatin1Char('/'));
}

QList<int> sorted(const QSet<int>& numbers)
{
    QList<int> list = numbers.values();
    std::sort(list.begin(), list.end());
    return list;
}

} // namespace

QString SettingsModelTexts::described(const Model::Registers& registers)
{
    return QStringLiteral(
               "framing %1 master %2 mode %3 sensitivity %4 view %5 mirror %6 picture %7")
        .arg(registers.autoFraming)
        .arg(registers.frameMaster)
        .arg(registers.subMode)
        .arg(registers.sensitivity)
        .arg(registers.view)
        .arg(registers.mirror)
        .arg(listed(registers.picture));
}

QString SettingsModelTexts::described(const Model::Faults& faults)
{
    QStringList words;
    for (const int command : sorted(faults.refused))
        words << QStringLiteral("refuses %1").arg(command, 0, 16);
    for (const int command : sorted(faults.lost))
        words << QStringLiteral("loses %1").arg(command, 0, 16);
    if (!faults.hasAmplifier)
        words << QStringLiteral("no picture values");
    if (faults.isVideoTaken)
        words << QStringLiteral("video taken");
    if (faults.isVideoRefused)
        words << QStringLiteral("video refused");
    return words.isEmpty() ? QStringLiteral("none") : words.join(QStringLiteral(", "));
}

QString SettingsModelTexts::described(const Model::Page& page)
{
    // Controls that are hidden while the intelligent features are off are not compared.
    QString framing = QStringLiteral("off");
    if (page.intelligent && page.framing == Model::Framing::FrameMaster)
        framing = QStringLiteral("frame master");
    else if (page.intelligent)
        framing = page.individual ? QStringLiteral("individual") : QStringLiteral("group");
    QStringList unknown;
    for (const int value : sorted(page.unknown))
        unknown << QString::number(value);
    return QStringLiteral("%1 view %2 sensitivity %3 mirror %4 preset %5 sliders %6 unknown %7")
        .arg(framing)
        .arg(page.view)
        .arg(page.sensitivity)
        .arg(page.mirror)
        .arg(page.imageMode)
        .arg(listed(page.sliders), unknown.join(QLatin1Char(' ')));
}

QString SettingsModelTexts::described(const QMap<QString, Model::Saved>& file)
{
    QStringList groups;
    for (auto group = file.begin(); group != file.end(); ++group)
        groups << QStringLiteral("%1: %2 preset %3")
                      .arg(group.key(), listed(group->picture))
                      .arg(group->imageMode);
    return groups.join(QStringLiteral("; "));
}
