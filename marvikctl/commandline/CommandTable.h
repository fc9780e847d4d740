#pragma once

#include "ConstRange.h"

#include <memory>
#include <QString>
#include <QStringList>

class Command;

/// The commands of the program, for the parser, the help and the completion of shells.
struct CommandRow
{
    const char* name;
    const char* arguments; ///< "[KEY...]"
    const char* summary;   ///< untranslated text of the context "CommandTable"
    const char* options;   ///< the options beside the common ones, divided by blanks
    std::unique_ptr<Command> (*make)();
};

namespace CommandTable {

[[nodiscard]] ConstRange<CommandRow> rows();
/// @return null when no command has this name
[[nodiscard]] const CommandRow* find(const QString& name);
[[nodiscard]] QStringList names();
[[nodiscard]] QString summary(const CommandRow& row);

} // namespace CommandTable
