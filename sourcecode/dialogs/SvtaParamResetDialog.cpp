#include "SvtaParamResetDialog.h"

SvtaParamResetDialog::SvtaParamResetDialog(QWidget* parent)
    : SvtaConfirmDialog(QStringLiteral("SvtaParamResetDialog"), tr("Reset parameters?"), parent)
{
}
