#include "SettingsDialogs.h"

#include "SvtaCenterTipDialog.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"

SettingsDialogs::SettingsDialogs(QWidget* window)
    : notSave(new SvtaParamNotSaveDialog(window))
    , reset(new SvtaParamResetDialog(window))
    , save(new SvtaParamSaveDialog(window))
    , centerTip(new SvtaCenterTipDialog(window))
{
    for (QDialog* dialog : std::initializer_list<QDialog*>{notSave, reset, save, centerTip}) {
        dialog->setModal(true);
        dialog->hide();
    }
}

QList<QDialog*> SettingsDialogs::questions() const
{
    return {notSave, reset, save};
}
