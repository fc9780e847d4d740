#pragma once

#include "Invocation.h"
#include "Result.h"

#include <optional>
#include <QCoreApplication>
#include <QStringList>

class QCommandLineParser;
struct CommandRow;

/// Reads the command line.
class CommandLine
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    /// @param arguments with the program's name first
    [[nodiscard]] static Result<Invocation> parse(const QStringList& arguments);

private:
    [[nodiscard]] static std::optional<Failure> checkOptions(const QCommandLineParser& parser,
                                                             const CommandRow& row);
    [[nodiscard]] static std::optional<Failure> readNumbers(const QCommandLineParser& parser,
                                                            Invocation& invocation);
};
