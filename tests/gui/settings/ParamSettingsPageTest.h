#pragma once

#include "ParamSettingsPage.h"
#include "SvtaSwitchButton.h"

#include <memory>
#include <QAbstractButton>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QStringList>
#include <QtTest>

/// A page on the screen, and all its signals, in order and as text.
class ShownPage : public QObject
{
    Q_OBJECT

public:
    ShownPage()
    {
        using Page = ParamSettingsPage;
        record(&Page::sigBrightSliderValueChanged, "bright");
        record(&Page::sigContrastSliderValueChanged, "contrast");
        record(&Page::sigSaturationSliderValueChanged, "saturation");
        record(&Page::sigSharpnessSliderValueChanged, "sharpness");
        record(&Page::sigCameraFigureCenterSwitch, "figureCenter");
        record(&Page::sigCameraHorizontalMirrorSwitch, "mirror");
        record(&Page::sigCameraViewSwitch, "viewSwitch");
        record(&Page::sigCameraParamSave, "save");
        record(&Page::sigShowLine, "line");
        record(&Page::sigShowParamResetDialog, "resetDialog");
        record(&Page::sigShowParamSaveDialog, "saveDialog");
        record(&Page::sigShowCenterTipDialog, "tipDialog");
        record(&Page::sigCameraViewChange, "viewChange");
        record(&Page::sigPickupSensitivityChange, "sensitivityChange");
        record(&Page::sigDoIntelligentSwitch, "intelligent");
        record(&Page::sigPickupSensitivitySwitch, "sensitivitySwitch");
        record(&Page::sigRbtnPersonalTrackChecked, "group");
        record(&Page::sigRbtnDivisionMasterChecked, "individual");
        record(&Page::sigRadioButtonChanged, "framing");
        record(&Page::sigSetDeviceImageMode, "imageMode");
        m_page.resize(360, 600);
        m_page.show();
        m_page.activateWindow();
        m_shown = QTest::qWaitForWindowActive(&m_page);
    }

    [[nodiscard]] bool isShown() const { return m_shown; }
    [[nodiscard]] ParamSettingsPage& page() { return m_page; }

    /// The signals since the last call.
    [[nodiscard]] QStringList taken()
    {
        QStringList signalled;
        signalled.swap(m_signalled);
        return signalled;
    }

    template <typename Widget = QWidget>
    [[nodiscard]] Widget* find(const char* name) const
    {
        auto* widget = m_page.findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("no %s", name);
        return widget;
    }
    [[nodiscard]] bool isChecked(const char* name) const
    {
        return find<QAbstractButton>(name)->isChecked();
    }
    [[nodiscard]] QString text(const char* name) const { return find<QLabel>(name)->text(); }
    [[nodiscard]] QSize sizeOf(const char* name) const { return find(name)->size(); }

    void click(const char* name) const { QTest::mouseClick(find(name), Qt::LeftButton); }
    void clickAt(const char* name, int x) const
    {
        QTest::mouseClick(find(name), Qt::LeftButton, Qt::NoModifier,
                          {x, find(name)->height() / 2});
    }
    void showCameraTab()
    {
        click("btnCameraSetting");
        m_signalled.clear();
    }

private:
    static QString toText(bool value)
    {
        return value ? QStringLiteral("on") : QStringLiteral("off");
    }
    static QString toText(int value) { return QString::number(value); }

    template <typename... Arguments>
    void record(void (ParamSettingsPage::*signal)(Arguments...), const char* name)
    {
        connect(&m_page, signal, this, [this, name](Arguments... arguments) {
            QStringList words{QLatin1String(name)};
            (words.append(toText(arguments)), ...);
            m_signalled += words.join(QLatin1Char(' '));
        });
    }

    ParamSettingsPage m_page;
    QStringList m_signalled;
    bool m_shown = false;
};
