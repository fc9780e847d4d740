#pragma once

#include "PreviewFailure.h"

#include <QCoreApplication>

/// Says in words why there is no picture, and what the user can do. The texts fit into the preview
/// area.
class PreviewFailureText
{
    Q_DECLARE_TR_FUNCTIONS(PreviewFailureText)

public:
    [[nodiscard]] static QString of(const PreviewFailure& failure);

private:
    // Who grants permission and what has parts differs: defined in
    // PreviewFailureText_<platform>.cpp.
    [[nodiscard]] static QString noPermission();
    [[nodiscard]] static QString partMissing(const QString& part);
};
