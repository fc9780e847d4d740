#pragma once

#include "CertificateKit.h"
#include "UpdateService.h"

#include <memory>
#include <QJsonObject>
#include <QTemporaryDir>

/// The update service to which the program under test connects. It runs on the test's own thread,
/// while the test processes events.
class LocalService
{
public:
    LocalService();
    ~LocalService();
    LocalService(const LocalService&) = delete;
    LocalService& operator=(const LocalService&) = delete;

    [[nodiscard]] bool isRunning() const { return m_service && m_service->isListening(); }
    [[nodiscard]] updateservice::UpdateService* operator->() const { return m_service.get(); }

    /// From now on checks are answered with @p text.
    void answer(const QByteArray& text);
    /// Serves @p content as a package of this name.
    /// @return the answer that offers it
    [[nodiscard]] QJsonObject offer(const QString& name, const QByteArray& content);
    /// The number of requests received for this path.
    [[nodiscard]] int requestsFor(const QByteArray& path) const;
    [[nodiscard]] int checks() const;

private:
    static updateservice::CertificateKit* certificates();

    std::unique_ptr<updateservice::UpdateService> m_service;
};
