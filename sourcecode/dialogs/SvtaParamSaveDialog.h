#pragma once

#include "SvtaConfirmDialog.h"

/// Asks before the settings are saved.
class SvtaParamSaveDialog : public SvtaConfirmDialog
{
    Q_OBJECT

public:
    explicit SvtaParamSaveDialog(QWidget* parent = nullptr);
};
