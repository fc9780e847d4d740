#include "ApplicationUpdateCheck.h"

#include "LogCategories.h"
#include "STHTTPRequest.h"
#include "UpdateCheck.h"
#include "Vendor.h"

ApplicationUpdateCheck::ApplicationUpdateCheck(QObject* parent)
    : QObject(parent)
{
}

void ApplicationUpdateCheck::checkOnce(const std::string& body)
{
    if (m_asked || !Vendor::checksForApplicationUpdate() || !UpdateCheck::isConfigured())
        return;
    m_asked = true;

    auto request = std::make_shared<Brivane::STHTTPRequest>();
    request->url = UpdateCheck::url();
    request->body = body;
    request->onResponse = [this](const std::string& answer) { takeAnswer(answer); };
    request->onError = [](int code, const std::string& message) {
        qCDebug(updateLog) << "no answer about a new version:" << code
                           << QString::fromStdString(message);
    };
    m_client.setExtraCaFile(UpdateCheck::caFile().toStdString());
    m_client.request(request);
}

/// On the networking library's thread.
void ApplicationUpdateCheck::takeAnswer(const std::string& body)
{
    const QJsonObject answer = UpdateCheck::getJsonObjectFromString(QString::fromStdString(body));
    if (answer.value(QLatin1String("needUpgrade")) == QJsonValue(true))
        emit sigOffer(answer);
    else
        qCDebug(updateLog) << "no new version";
}
