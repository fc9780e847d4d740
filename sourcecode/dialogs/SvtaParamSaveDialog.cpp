#include "SvtaParamSaveDialog.h"

SvtaParamSaveDialog::SvtaParamSaveDialog(QWidget* parent)
    : SvtaConfirmDialog(QStringLiteral("SvtaParamSaveDialog"), tr("Save the settings？"), parent)
{
}
