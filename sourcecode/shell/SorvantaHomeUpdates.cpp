#include "LoadingDialog.h"
#include "SorvantaHome.h"
#include "SvtaForceUpdateSecondDialog.h"
#include "SvtaMessageDialog.h"

#include <QDebug>
#include <QTimer>

// Offers and downloads begin with an answer of the update service. This program knows no service
// yet, so nothing emits the signals that lead to them; the slots say so should that ever be untrue.

void SorvantaHome::slotSetDownloadData(const QJsonObject& downloadData, const QString& text)
{
    qWarning() << "no update service: firmware offer ignored" << text << downloadData.keys();
}

void SorvantaHome::slotForceUpdate(const QJsonObject& downloadData)
{
    qWarning() << "no update service: forced offer ignored" << downloadData.keys();
}

void SorvantaHome::slotSetUpdateData(const QJsonObject& updateData)
{
    qWarning() << "no update service: offer ignored" << updateData.keys();
}

void SorvantaHome::slotSetProgress(int progress)
{
    qWarning() << "no update service: progress ignored" << progress;
}

void SorvantaHome::slotStopUpdate()
{
    qWarning() << "no update service: nothing to stop";
}

void SorvantaHome::slotDownloadFailed()
{
    qWarning() << "no update service: no download to fail";
}

void SorvantaHome::slotDownloadSuccessed()
{
    qWarning() << "no update service: no download to install";
}

void SorvantaHome::slotCameraUpgrade()
{
    qWarning() << "no firmware file is set for the development entry";
}

void SorvantaHome::slotRetry()
{
    m_messageDialog->hide();
}

void SorvantaHome::slotDownloadFailedCancel()
{
    m_messageDialog->hide();
}

void SorvantaHome::slotHideLoadingPage()
{
    m_updateTimer->stop();
    m_loadingDialog->hide();
}

void SorvantaHome::slotTimeout()
{
    qDebug() << "SorvantaHome::slotTimeout" << 1284 << "超时了";
    m_updateTimer->stop();
    m_loadingDialog->hide();
    showView(SvtaPagesView::HomePage);
    showToast(tr("更新失败，请重试"));
}

void SorvantaHome::slotShowCloseAppDialog()
{
    showMasked(m_closeAppDialog);
}
