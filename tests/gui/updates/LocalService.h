#pragma once

#include "CertificateKit.h"
#include "UpdateService.h"

#include <memory>
#include <QJsonObject>
#include <QTemporaryDir>

/// The update service that the program under test knows and trusts, on the test's own thread: it
/// serves while the test waits for something.
class LocalService
{
public:
    LocalService();
    ~LocalService();
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    [[nodiscard]] bool isRunning() const { return m_service && m_service->isListening(); }
    [[nodiscard]] updateservice::UpdateService* operator->() const { return m_service.get(); }

    /// The check is answered with @p text from now on.
    void answer(const QByteArray& text);
    /// Serves @p content as a package of this name.
    /// @return the answer that offers it
    [[nodiscard]] QJsonObject offer(const QString& name, const QByteArray& content);
    /// How many requests for this path have come.
    [[nodiscard]] int requestsFor(const QByteArray& path) const;
    [[nodiscard]] int checks() const;

private:
    static updateservice::CertificateKit* certificates();

    std::unique_ptr<updateservice::UpdateService> m_service;
};
