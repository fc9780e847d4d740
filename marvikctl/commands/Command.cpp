#include "Command.h"

#include "Selection.h"

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(Command)
};

} // namespace

void Command::forEach(std::vector<CameraLink>& links, const Invocation& invocation, Report& report,
                      const Work& work)
{
    for (CameraLink& link : links) {
        const std::optional<Failure> failure = link.open();
        // Titles and documents name cameras by their serial numbers. When a camera does not report
        // its number, the work below returns the reason.
        if (!failure && (invocation.json || links.size() > 1))
            static_cast<void>(link.serialNumber());
        CameraResult& result = report.add(link);
        if (failure)
            result.fail(*failure);
        else
            work(link, result);
        result.serial = link.knownSerialNumber();
        link.close();
    }
}

void Command::forEachChosen(const Invocation& invocation, Report& report, const Work& work)
{
    auto links = Selection::choose(invocation);
    if (links)
        forEach(*links, invocation, report, work);
    else
        report.fail(links.failure());
}

void Command::forEachPresent(const Invocation& invocation, Report& report, const Work& work)
{
    auto links = Selection::chooseOrAll(invocation);
    if (links)
        forEach(*links, invocation, report, work);
    else
        report.fail(links.failure());
}

bool Command::refusesArguments(const Invocation& invocation, Report& report)
{
    if (invocation.arguments.isEmpty())
        return false;
    report.fail({Failure::Kind::Usage,
                 Texts::tr("the command \"%1\" takes no arguments").arg(invocation.command),
                 {}});
    return true;
}
