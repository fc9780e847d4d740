#pragma once

#include "ConstRange.h"

#include <QCommandLineOption>
#include <QString>
#include <QStringList>

/// One option of the program.
struct OptionRow
{
    const char* shortName; ///< null when it has none
    const char* name;
    const char* valueName; ///< null for a switch
    const char* text;      ///< untranslated text of the context "OptionTable"
    bool isCommon;         ///< every command takes it
};

namespace OptionTable {

[[nodiscard]] ConstRange<OptionRow> rows();
[[nodiscard]] QCommandLineOption make(const OptionRow& row);
[[nodiscard]] QString text(const OptionRow& row);

} // namespace OptionTable
