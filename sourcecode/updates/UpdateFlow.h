#pragma once

#include "DeviceWidgetInfo.h"
#include "HidDevices.h"
#include "SvtaPagesView.h"

#include <functional>
#include <memory>
#include <optional>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <string>

class AboutPage;
class ApplicationUpdateCheck;
class FirmwareWorker;
class LoadingDialog;
class MaskForm;
class OpenCamera;
class QTimer;
class QWidget;
class SessionEndBlock;
class SvtaForceUpdateSecondDialog;
class SvtaMessageDialog;
class SvtaVersionUpdateDialog;

/// Runs an update from the offer to its end: shows the dialogs of offer, download and failure,
/// writes firmware into the open camera, verifies the camera when it returns, and starts the
/// installer of a newer program.
///
/// GUI thread. The dialogs belong to the window.
class UpdateFlow : public QObject
{
    Q_OBJECT

public:
    /// @param mask dims the window under the dialogs
    UpdateFlow(OpenCamera& camera, MaskForm& mask, QWidget* window);
    ~UpdateFlow() override;

    // The window connects these to its slots.
    [[nodiscard]] SvtaVersionUpdateDialog* updateDialog() const { return m_updateDialog; }
    [[nodiscard]] SvtaMessageDialog* messageDialog() const { return m_messageDialog; }
    /// Limits an installation.
    [[nodiscard]] QTimer* installTimer() const { return m_updateTimer; }

    /// Takes the program's own version from config.json beside it and shows it on @p page.
    void readConfigFile(AboutPage& page);
    /// Asks once for a newer version of the program. An offer goes to @p page.
    void checkApplication(AboutPage& page);

    /// Shows an offer of firmware for the open camera; ignored while another update is under way.
    /// @param text name of the product
    void showFirmwareOffer(const QJsonObject& downloadData, const QString& text);
    /// Shows an offer of the program. It waits until the list or the about page is shown and no
    /// update is under way, because its package must never get into a camera.
    void showApplicationOffer(const QJsonObject& updateData);
    /// As showApplicationOffer(), but the user can only accept the offer or end the program.
    void showForcedOffer(const QJsonObject& downloadData);
    /// Must be called when a page is shown.
    void pageShown(SvtaPagesView::ViewPageEnum page);

    void setProgress(int progress);
    void stopDownload();
    void downloadFailed();
    void retry();
    void cancelAfterFailure();
    /// Uses the package. Firmware is written into the open camera when the information page is
    /// shown. The installer of the program is started when the list or the about page is shown.
    /// Otherwise the package stays in the cache directory.
    void downloadSucceeded(SvtaPagesView::ViewPageEnum page);
    void hideLoading();
    /// No camera has returned within the time of an installation.
    void timeOut();
    /// Asks whether to end the program. The update dialog stays visible behind the question, and a
    /// second mask dims both.
    void showCloseAppQuestion();
    /// For developers: writes an image into the open camera without update service and dialogs.
    void writeDevelopmentFirmware();

    /// Whether firmware is being installed. The camera restarts during it, so its pages stay open
    /// while the camera is away.
    [[nodiscard]] bool isInstalling() const;
    /// Whether firmware is being written into the camera at @p hidPath.
    [[nodiscard]] bool isBusy(const QString& hidPath) const;
    /// As isBusy(), and shows a toast when the camera is busy.
    bool refusesBusyCamera(const DeviceWidgetInfo& info);

    /// Must be called after each change of the devices.
    /// @param devices the interfaces that are present, by their path
    void devicesChanged(const QMap<QString, HidDevices>& devices);
    /// The camera that is being updated has left the bus; @p others are still there.
    void cameraLeft(const QList<HidDevices>& others);
    /// A camera was plugged in while the information page is open. Asks the cameras that have come
    /// since the updated one left for their identity; the one with the serial number of the open
    /// camera decides about the update.
    /// @param present     the cameras that are there now
    /// @param arrived     those of them that were not there before
    /// @param videoPathOf the video path of a control interface, empty when it is not known
    void verifyReturningCamera(const QList<HidDevices>& present, const QList<HidDevices>& arrived,
                               const std::function<QString(const QString&)>& videoPathOf);

    /// Hides the update dialog and stops its download, because the camera has left.
    /// @return false when the dialog was not visible; then nothing is done
    bool hideForRemoval();
    /// Waits until no camera is being written. Events are handled meanwhile.
    void finishTransfer();

signals:
    void sigShowToast(const QString& text);
    void sigShowList();
    /// The window must be shown, because it may be in the tray or minimised.
    void sigRestoreWindow();
    /// The camera could not be opened, and nothing was sent to it.
    void sigNotOpened();
    /// @param hidPath the control interface to which no command may be sent; empty when there is
    ///                none
    void sigBusyCameraChanged(const QString& hidPath);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] QList<HidDevices> candidates(const QList<HidDevices>& present,
                                               const QList<HidDevices>& arrived) const;
    bool isReturningCamera(const HidDevices& device, QString& version);
    void judge(const HidDevices& device, const QString& version, const QString& videoPath);
    /// What an offer and its package are for.
    enum class Package { Firmware, Application };

    [[nodiscard]] bool isDownloading() const;
    [[nodiscard]] bool isUnderWay() const;
    void offerApplication(const QJsonObject& updateData, bool forced);
    void showWaitingOffer();
    [[nodiscard]] bool isForOpenCamera() const;
    [[nodiscard]] bool isWhole(const QString& file) const;
    void installWhenFree(SvtaPagesView::ViewPageEnum page, int waitedMs = 0);
    void installFirmware(const QString& file);
    void removeFirmwarePackage();
    void writeFirmware(const QString& file);
    void installApplication(SvtaPagesView::ViewPageEnum page);
    void transferFinished(bool sent);
    void showFailed();
    void returnToOpenCamera();

    OpenCamera& m_camera;
    MaskForm& m_mask;
    QWidget* m_window;
    FirmwareWorker* m_worker;
    std::unique_ptr<SessionEndBlock> m_sessionEndBlock; ///< during a transfer
    ApplicationUpdateCheck* m_applicationUpdate;
    SvtaVersionUpdateDialog* m_updateDialog;
    SvtaMessageDialog* m_messageDialog;
    SvtaForceUpdateSecondDialog* m_closeAppDialog;
    LoadingDialog* m_loadingDialog;
    MaskForm* m_closeAppMask = nullptr; ///< created when it is first needed
    QTimer* m_updateTimer;
    QString mVersion; ///< of the program, from config.json
    std::string m_applicationBody;
    /// The cameras that were there when the one that is being updated left; nothing while it has
    /// not been seen to leave.
    std::optional<QStringList> m_othersWhenItLeft;
    bool m_forceStatus = false;               ///< a forced update of the program is under way
    Package m_package = Package::Application; ///< of the offer that was shown last
    QString m_firmwareFile;                   ///< the downloaded package; empty when there is none
    DeviceWidgetInfo m_offerCamera;           ///< the camera that firmware was offered for
    SvtaPagesView::ViewPageEnum m_page = SvtaPagesView::StartPage;
    std::function<void()>
        m_waitingOffer; ///< shows the offer of the program that waits; may be empty
};
