#pragma once

#include "CameraBench.h"
#include "DeviceHomePage.h"
#include "SvtaDeviceWidget.h"

#include <QListWidget>
#include <QtTest>

/// The device list on the screen, as large as in the main window.
class ShownList
{
public:
    explicit ShownList(int cameras = 0)
        : m_bench(cameras)
    {
        QObject::connect(&m_page, &DeviceHomePage::sigSetDeviceWidgetMaps, &m_page,
                         [this](const QMap<QString, DeviceWidgetInfo>& map) { m_records << map; });
        m_page.setFixedSize(360, 644);
        m_page.show();
        m_shown = QTest::qWaitForWindowExposed(&m_page);
    }

    [[nodiscard]] bool isShown() const { return m_shown; }
    [[nodiscard]] CameraBench& bench() { return m_bench; }
    [[nodiscard]] DeviceHomePage& page() { return m_page; }
    [[nodiscard]] QListWidget& list() const
    {
        return *m_page.findChild<QListWidget*>(QStringLiteral("deviceList"));
    }

    /// What a hot-plug notification leads to.
    void update(int status = DevicePluggedIn)
    {
        m_page.slotUpdateCameraList(CameraBench::videoDevices(), status);
    }
    /// The cards from top to bottom.
    [[nodiscard]] QList<SvtaDeviceWidget*> cards() const
    {
        QList<SvtaDeviceWidget*> cards;
        for (int row = 0; row < list().count(); ++row)
            cards << qobject_cast<SvtaDeviceWidget*>(list().itemWidget(list().item(row)));
        return cards;
    }
    /// The records that were signalled, one map for each build.
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
        return pair(CameraBench::hidPath(hid), CameraBench::videoPath(video));
    }

private:
    CameraBench m_bench;
    QList<QMap<QString, DeviceWidgetInfo>> m_records;
    DeviceHomePage m_page;
    bool m_shown = false;
};
