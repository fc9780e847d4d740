#pragma once

#include "CHttpClient.h"

#include <QJsonObject>
#include <QObject>
#include <QString>

/// Asks the update service whether there is newer firmware for a model.
class ServiceCheck : public QObject
{
    Q_OBJECT

public:
    /// finished() is emitted from the event loop.
    void start(const QString& model, const QString& version);

signals:
    /// @param answer "isConfigured" and, when it is, "error" or "isOffered" with "details", "url"
    /// and
    ///        "size"
    void finished(const QJsonObject& answer);

private:
    void report(const QJsonObject& answer);

    Brivane::CHttpClient m_client;
};
