#pragma once

#include "CameraArrivals.h"
#include "CameraLink.h"
#include "Report.h"

#include <functional>
#include <QByteArray>
#include <QCoreApplication>
#include <QString>

/// Writes a firmware image into one camera, waits until it is back and looks whether it has taken
/// it. Blocks; several objects may work on threads of their own, each on its camera.
class FirmwareInstaller
{
    Q_DECLARE_TR_FUNCTIONS(FirmwareInstaller)

public:
    struct Image
    {
        QString file;
        QByteArray bytes;
    };
    /// Called for each step, on the thread of the installation.
    using Progress = std::function<void(const CameraResult& camera, const QString& text,
                                        const QJsonObject& event)>;

    FirmwareInstaller(const Image& image, const Invocation& invocation, Progress progress);

    /// @param link closed
    void install(CameraLink& link, CameraResult& result);

private:
    struct Identity
    {
        QString serial;
        QString version;
    };
    /// Who came back, and whether it reports itself as connected.
    struct Returned
    {
        QString version;
        bool isConnected = false;
    };

    [[nodiscard]] static Result<Identity> identify(CameraLink& link);
    /// Whether there is nothing to install.
    [[nodiscard]] bool hasVersion(const QString& version, CameraResult& result) const;
    [[nodiscard]] std::optional<Failure> transfer(CameraLink& link, const CameraResult& result);
    [[nodiscard]] Result<Returned> waitForReturn(CameraArrivals& arrivals, const QString& serial,
                                                 std::chrono::steady_clock::time_point end) const;
    [[nodiscard]] std::optional<Returned> ask(const QString& path, const QString& serial) const;
    void judge(const Identity& before, const Returned& returned, CameraResult& result) const;

    const Image& m_image;
    const Invocation& m_invocation;
    Progress m_progress;
};
