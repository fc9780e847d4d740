#pragma once

#include <QList>

class QDialog;
class QWidget;
class SvtaCenterTipDialog;
class SvtaParamNotSaveDialog;
class SvtaParamResetDialog;
class SvtaParamSaveDialog;

/// The dialogs of the settings page: the three questions and the help for person centring. All are
/// modal, hidden at first and belong to the window.
struct SettingsDialogs
{
    explicit SettingsDialogs(QWidget* window);

    /// The questions. When the camera is removed, the first of them that is open is closed.
    [[nodiscard]] QList<QDialog*> questions() const;

    SvtaParamNotSaveDialog* notSave;
    SvtaParamResetDialog* reset;
    SvtaParamSaveDialog* save;
    SvtaCenterTipDialog* centerTip;
};
