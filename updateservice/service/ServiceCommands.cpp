#include "ServiceCommands.h"

#include "UpdateService.h"

#include <QStringList>

namespace updateservice {

namespace {

const QString kDone = QStringLiteral("ok");

} // namespace

ServiceCommands::ServiceCommands(UpdateService& service)
    : m_service(service)
{
}

QString ServiceCommands::run(const QString& line)
{
    const QString name = line.section(QLatin1Char(' '), 0, 0);
    const QString rest = line.section(QLatin1Char(' '), 1);
    if (name == QLatin1String("fault"))
        return m_service.fault(rest) ? kDone : "error no such fault: " + rest;
    if (name == QLatin1String("clear")) {
        m_service.setBehaviour({});
        return kDone;
    }
    if (name == QLatin1String("stop")) {
        m_service.stop();
        return kDone;
    }
    if (name == QLatin1String("start"))
        return m_service.isListening() || m_service.start() ? kDone : "error the port is taken";
    if (name == QLatin1String("offer"))
        return offer(rest);
    if (name == QLatin1String("requests"))
        return requests();
    return "error no such request: " + name;
}

QString ServiceCommands::offer(const QString& words)
{
    UpdateOffer offer = m_service.offer();
    const QString key = words.section(QLatin1Char('='), 0, 0);
    const QString value = words.section(QLatin1Char('='), 1);
    if (key == QLatin1String("version"))
        offer.version = value;
    else if (key == QLatin1String("details"))
        offer.details = value;
    else if (key == QLatin1String("size"))
        offer.packageSize = value;
    else if (key == QLatin1String("url"))
        offer.url = value;
    else if (key == QLatin1String("text"))
        offer.text = value.toUtf8();
    else
        return "error no such part of an offer: " + key;
    m_service.setOffer(offer);
    return kDone;
}

QString ServiceCommands::requests() const
{
    QStringList lines{kDone};
    for (const RequestRecord& request : m_service.requests())
        lines += QString::fromUtf8(request.method + ' ' + request.path + ' ' +
                                   request.body.simplified());
    return lines.join(QLatin1Char('\n'));
}

} // namespace updateservice
