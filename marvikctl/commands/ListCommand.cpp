#include "ListCommand.h"

void ListCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    report.setAnswer();
    report.ignoreCameraFailures();
    QList<QStringList> table{
        {tr("SERIAL"), tr("NAME"), tr("MODEL"), tr("FIRMWARE"), tr("STATE"), tr("PATH")}};
    forEachPresent(invocation, report, [&table](CameraLink& link, CameraResult& result) {
        std::optional<Failure> failure = link.probe();
        QString version;
        if (!failure) {
            const auto serial = link.serialNumber();
            const auto firmware = link.firmwareVersion();
            version = firmware ? *firmware : QString();
            if (!serial)
                failure = serial.failure();
            else if (!firmware)
                failure = firmware.failure();
        }
        if (failure)
            result.fail(*failure);
        result.details.insert(QStringLiteral("connected"), !failure);
        result.details.insert(QStringLiteral("firmware"),
                              version.isEmpty() ? QJsonValue() : QJsonValue(version));
        const QString serial = link.knownSerialNumber();
        const QString none = QStringLiteral("-");
        table.append({serial.isEmpty() ? none : serial, result.name, result.model,
                      version.isEmpty() ? none : version,
                      failure ? failure->code() : tr("connected"), result.path});
    });
    if (!report.cameras().empty())
        report.setTable(table);
}
