#include "InfoCommand.h"

void InfoCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    report.setAnswer();
    forEachChosen(invocation, report, [](CameraLink& link, CameraResult& result) {
        if (const auto failure = link.probe()) {
            result.fail(*failure);
            return;
        }
        const auto serial = link.serialNumber();
        const auto version = link.firmwareVersion();
        const auto stream = link.stream();
        const auto video = CameraInventory::videoOf(link.camera());
        QJsonObject& details = result.details;
        result.rows = {{tr("name"), result.name}, {tr("model"), result.model}};
        if (serial)
            result.rows.append({tr("serial number"), *serial});
        else
            result.fail(serial.failure());
        if (version) {
            result.rows.append({tr("firmware"), *version});
            details.insert(QStringLiteral("firmware"), *version);
        } else {
            result.fail(version.failure());
        }
        if (stream) {
            const bool isOn = stream->streamOn != 0;
            details.insert(QStringLiteral("stream"),
                           QJsonObject{{QStringLiteral("on"), isOn},
                                       {QStringLiteral("width"), stream->width},
                                       {QStringLiteral("height"), stream->height}});
            result.rows.append(
                {tr("picture"), isOn ? tr("%1 x %2, in use").arg(stream->width).arg(stream->height)
                                     : tr("not in use")});
        } else {
            result.fail(stream.failure());
        }
        result.rows.append({tr("control interface"), result.path});
        const QString videoPath = video ? video->displayName : QString();
        details.insert(QStringLiteral("video"), video ? QJsonValue(videoPath) : QJsonValue());
        result.rows.append({tr("video interface"), video ? videoPath : tr("none")});
    });
}
