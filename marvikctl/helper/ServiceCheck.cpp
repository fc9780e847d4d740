#include "ServiceCheck.h"

#include "UpdateCheck.h"

#include <memory>

void ServiceCheck::start(const QString& model, const QString& version)
{
    if (!UpdateCheck::isConfigured()) {
        report({{QStringLiteral("isConfigured"), false}});
        return;
    }
    auto request = std::make_shared<Brivane::STHTTPRequest>();
    request->url = UpdateCheck::url();
    request->body = UpdateCheck::body(model, version);
    request->onResponse = [this](const std::string& body) {
        const QJsonObject answer =
            UpdateCheck::getJsonObjectFromString(QString::fromStdString(body));
        const auto text = [&answer](const char* key) {
            return answer.value(QLatin1String(key)).toVariant().toString();
        };
        report({{QStringLiteral("isConfigured"), true},
                {QStringLiteral("isOffered"), UpdateCheck::offersUpdate(answer)},
                {QStringLiteral("details"), text("details")},
                {QStringLiteral("url"), text("downLoadUrl")},
                {QStringLiteral("size"), text("packageSize")}});
    };
    request->onError = [this](int code, const std::string& message) {
        report({{QStringLiteral("isConfigured"), true},
                {QStringLiteral("error"),
                 QStringLiteral("%1 (%2)").arg(QString::fromStdString(message)).arg(code)}});
    };
    m_client.setExtraCaFile(UpdateCheck::caFile().toStdString());
    m_client.request(request);
}

/// On any thread.
void ServiceCheck::report(const QJsonObject& answer)
{
    QMetaObject::invokeMethod(
        this, [this, answer] { emit finished(answer); }, Qt::QueuedConnection);
}
