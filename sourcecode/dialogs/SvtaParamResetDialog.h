#pragma once

#include "SvtaConfirmDialog.h"

/// Asks before the settings go back to the factory defaults.
class SvtaParamResetDialog : public SvtaConfirmDialog
{
    Q_OBJECT

public:
    explicit SvtaParamResetDialog(QWidget* parent = nullptr);
};
