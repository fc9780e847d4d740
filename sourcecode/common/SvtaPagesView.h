#pragma once

#include <QMetaType>
#include <QObject>

/// The pages and picture presets, named in one place for the main window and its pages.
class SvtaPagesView : public QObject
{
    Q_OBJECT

public:
    /// Pages of the main window; the value is the page's index in the window's stack.
    enum ViewPageEnum {
        StartPage = 0,
        HomePage = 1,
        InfoPage = 2,
        AboutUsPage = 3,
        SettingPage = 4,
    };
    Q_ENUM(ViewPageEnum)

    /// Picture presets; the value is what device.ini keeps.
    enum ImageMode {
        Standard = 0,
        Bright = 1,
        Vivid = 2,
        Custom = 3,
    };
    Q_ENUM(ImageMode)
};
