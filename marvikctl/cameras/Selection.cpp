#include "Selection.h"

#include <algorithm>
#include <set>

std::vector<CameraLink> Selection::links(const Invocation& invocation)
{
    std::vector<CameraLink> links;
    for (FoundCamera& camera : CameraInventory::list())
        links.emplace_back(std::move(camera), invocation.timeout);
    return links;
}

QList<Selection::Candidate> Selection::identify(std::vector<CameraLink>& links)
{
    QList<Candidate> candidates;
    for (CameraLink& link : links) {
        Candidate candidate;
        const std::optional<Failure> failure = link.open();
        const auto serial = failure ? Result<QString>(*failure) : link.serialNumber();
        link.close();
        const QString name = QString::fromUtf8(link.camera().model->displayName);
        if (serial) {
            candidate.serial = *serial;
            candidate.title = QStringLiteral("%1 (%2, %3)").arg(*serial, name, link.path());
        } else {
            candidate.title =
                QStringLiteral("%1, %2: %3").arg(name, link.path(), serial.failure().message);
        }
        candidates.append(candidate);
    }
    return candidates;
}

QString Selection::listOf(const QList<Candidate>& candidates)
{
    QStringList titles;
    for (const Candidate& candidate : candidates)
        titles << candidate.title;
    return titles.join(QStringLiteral("\n  "));
}

Result<int> Selection::match(const QList<Candidate>& candidates, const QString& wanted)
{
    QList<int> beginning;
    for (int i = 0; i < candidates.size(); ++i) {
        if (candidates.at(i).serial == wanted)
            return i;
        if (candidates.at(i).serial.startsWith(wanted))
            beginning.append(i);
    }
    if (beginning.size() == 1)
        return beginning.first();
    if (beginning.isEmpty())
        return Failure{Failure::Kind::NoCamera,
                       tr("no camera has the serial number %1").arg(wanted),
                       tr("The cameras are\n  %1").arg(listOf(candidates))};
    QList<Candidate> possible;
    for (const int index : beginning)
        possible.append(candidates.at(index));
    return Failure{Failure::Kind::Usage, tr("several serial numbers begin with %1").arg(wanted),
                   listOf(possible)};
}

Result<std::vector<CameraLink>> Selection::choose(const Invocation& invocation)
{
    auto chosen = chooseOrAll(invocation);
    if (!chosen || invocation.all || !invocation.serials.isEmpty() || chosen->size() == 1)
        return chosen;
    return Failure{Failure::Kind::Usage, tr("there are several cameras"),
                   tr("Choose with --device, or take --all:\n  %1").arg(listOf(identify(*chosen)))};
}

Result<std::vector<CameraLink>> Selection::chooseOrAll(const Invocation& invocation)
{
    std::vector<CameraLink> all = links(invocation);
    if (all.empty())
        return Failure{Failure::Kind::NoCamera, tr("no supported camera is plugged in"), {}};
    if (invocation.serials.isEmpty())
        return Result<std::vector<CameraLink>>(std::move(all));
    const QList<Candidate> candidates = identify(all);
    std::set<int> indices;
    for (const QString& serial : invocation.serials) {
        const auto index = match(candidates, serial);
        if (!index)
            return index.failure();
        indices.insert(*index);
    }
    std::vector<CameraLink> chosen;
    chosen.reserve(indices.size());
    for (const int index : indices)
        chosen.push_back(std::move(all[static_cast<std::size_t>(index)]));
    return Result<std::vector<CameraLink>>(std::move(chosen));
}
