#pragma once

#include "DeviceHomePage.h"
#include "ScriptedCameras.h"
#include "SvtaDeviceWidget.h"

#include <QListWidget>
#include <QtTest>

/// The device list on the screen, as large as in the main window.
class ShownList
{
public:
    explicit ShownList(int cameras = 0)
        : m_cameras(cameras)
    {
        QObject::connect(&m_page, &DeviceHomePage::sigSetDeviceWidgetMaps, &m_page,
                         [this](const QMap<QString, DeviceWidgetInfo>& map) { m_records << map; });
        m_page.setFixedSize(360, 644);
        m_page.show();
        m_shown = QTest::qWaitForWindowExposed(&m_page);
    }

    [[nodiscard]] bool isShown() const { return m_shown; }
    [[nodiscard]] ScriptedCameras& cameras() { return m_cameras; }
    [[nodiscard]] DeviceHomePage& page() { return m_page; }
    [[nodiscard]] QListWidget& list() const
    {
        return *m_page.findChild<QListWidget*>(QStringLiteral("deviceList"));
    }

    /// Updates the list as a hot-plug notification does.
    void update(int status = DevicePluggedIn)
    {
        m_page.slotUpdateCameraList(ScriptedCameras::videoDevices(), status);
    }
    /// The cards from top to bottom.
    [[nodiscard]] QList<SvtaDeviceWidget*> cards() const
    {
        QList<SvtaDeviceWidget*> cards;
        for (int row = 0; row < list().count(); ++row)
            cards << qobject_cast<SvtaDeviceWidget*>(list().itemWidget(list().item(row)));
        return cards;
    }
    /// The records of the list's signals, one map for each rebuild.
    [[nodiscard]] const QList<QMap<QString, DeviceWidgetInfo>>& records() const
    {
        return m_records;
    }
    /// Each card's "control interface > video device", from top to bottom.
    [[nodiscard]] QStringList pairs() const
    {
        QStringList pairs;
        for (const SvtaDeviceWidget* card : cards())
            pairs << pair(card->data().hidPath, card->data().path);
        return pairs;
    }
    [[nodiscard]] static QString pair(const QString& hidPath, const QString& videoPath)
    {
        return hidPath + QStringLiteral(" > ") + videoPath;
    }
    [[nodiscard]] static QString pair(int hid, int video)
    {
        return pair(ScriptedCameras::hidPath(hid), ScriptedCameras::videoPath(video));
    }

private:
    ScriptedCameras m_cameras;
    QList<QMap<QString, DeviceWidgetInfo>> m_records;
    DeviceHomePage m_page;
    bool m_shown = false;
};
