#include "HelpCommand.h"

#include "CommandTable.h"
#include "NearestWord.h"
#include "OptionTable.h"
#include "SettingNames.h"

#include <QJsonArray>

namespace {

QStringList optionRow(const OptionRow& option)
{
    QString names = QStringLiteral("  ");
    names += option.shortName ? QStringLiteral("-%1, ").arg(QString::fromLatin1(option.shortName))
                              : QStringLiteral("    ");
    names += QStringLiteral("--") + QString::fromLatin1(option.name);
    if (option.valueName)
        names += QLatin1Char(' ') + QString::fromLatin1(option.valueName);
    return {names, OptionTable::text(option)};
}

QString paragraph(const QString& title, const QList<QStringList>& rows)
{
    return title + QLatin1Char('\n') + Terminal::aligned(rows).join(QLatin1Char('\n')) +
           QLatin1Char('\n');
}

QList<QStringList> optionRows(const CommandRow* command)
{
    const QStringList own =
        command ? QString::fromLatin1(command->options).split(QLatin1Char(' ')) : QStringList();
    QList<QStringList> rows;
    for (const OptionRow& option : OptionTable::rows()) {
        if (option.isCommon || own.contains(QString::fromLatin1(option.name)))
            rows.append(optionRow(option));
    }
    return rows;
}

QList<QStringList> settingRows()
{
    QList<QStringList> rows;
    for (const SettingKey& key : SettingNames::keys()) {
        const QString values = key.kind == SettingKey::Kind::Picture
                                   ? QStringLiteral("0%...100%, 78...178")
                                   : SettingNames::valueNames(key).join(QStringLiteral(", "));
        rows.append({QStringLiteral("  ") + key.name, values});
    }
    return rows;
}

} // namespace

void HelpCommand::run(const Invocation& invocation, Report& report)
{
    const QString topic = invocation.arguments.value(0);
    if (topic.isEmpty()) {
        QList<QStringList> rows;
        QJsonArray commands;
        for (const CommandRow& row : CommandTable::rows()) {
            rows.append({QStringLiteral("  ") + QString::fromLatin1(row.name) + QLatin1Char(' ') +
                             QString::fromLatin1(row.arguments),
                         CommandTable::summary(row)});
            commands.append(QJsonObject{{QStringLiteral("name"), QString::fromLatin1(row.name)},
                                        {QStringLiteral("summary"), CommandTable::summary(row)}});
        }
        report.set(QStringLiteral("commands"), commands);
        report.setText(tr("Usage: marvikctl COMMAND [OPTION...] [ARGUMENT...]\n\n") +
                       paragraph(tr("Commands:"), rows) + QLatin1Char('\n') +
                       paragraph(tr("Settings:"), settingRows()) + QLatin1Char('\n') +
                       paragraph(tr("Options of all commands:"), optionRows(nullptr)));
        return;
    }
    const CommandRow* row = CommandTable::find(topic);
    if (!row) {
        const QString nearest = NearestWord::in(CommandTable::names(), topic);
        report.fail({Failure::Kind::Usage, tr("unknown command \"%1\"").arg(topic),
                     nearest.isEmpty() ? QString() : tr("Did you mean \"%1\"?").arg(nearest)});
        return;
    }
    report.set(QStringLiteral("commands"),
               QJsonArray{QJsonObject{{QStringLiteral("name"), topic},
                                      {QStringLiteral("summary"), CommandTable::summary(*row)}}});
    report.setText(tr("Usage: marvikctl %1 [OPTION...] %2\n\n")
                       .arg(topic, QString::fromLatin1(row->arguments)) +
                   CommandTable::summary(*row) + QStringLiteral("\n\n") +
                   paragraph(tr("Options:"), optionRows(row)));
}
