#include "Program.h"

#include "Command.h"
#include "CommandLine.h"
#include "CommandTable.h"
#include "VerboseLog.h"

int Program::run(const QStringList& arguments)
{
    const Terminal terminal = Terminal::ofThisProcess();
    auto parsed = CommandLine::parse(arguments);
    Invocation wrong;
    // A program that wanted a document gets one although its command line cannot be read.
    wrong.json =
        arguments.contains(QStringLiteral("--json")) || arguments.contains(QStringLiteral("-j"));
    const Invocation& invocation = parsed ? *parsed : wrong;
    const VerboseLog log(invocation.verbose);
    Report report(invocation, terminal);
    if (parsed)
        CommandTable::find(invocation.command)->make()->run(invocation, report);
    else
        report.fail(parsed.failure());
    report.print();
    return static_cast<int>(report.exitCode());
}
