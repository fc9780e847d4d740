#include "PermissionAdvice.h"

QString PermissionAdvice::hint(const Facts& facts)
{
    if (!facts.isRuleInstalled)
        return tr("The udev rule 70-marviktools.rules is missing. Install the package marvikctl or "
                  "marviktools, then plug the camera in again.");
    if (!facts.isInGroup)
        return tr("Without a session at the seat, access comes through the group \"%1\", which %2 "
                  "is "
                  "not in: sudo adduser %2 %1, then log in again.")
            .arg(facts.neededGroup, facts.user);
    if (!facts.isActive)
        return tr("%1 is in the group \"%2\", but this session began before that: log in again.")
            .arg(facts.user, facts.neededGroup);
    if (facts.nodeGroup != facts.neededGroup)
        return tr("The node belongs to the group \"%1\" and not to \"%2\", so the udev rule was "
                  "not "
                  "applied: plug the camera in again.")
            .arg(facts.nodeGroup, facts.neededGroup);
    return tr("The udev rule and the group \"%1\" are in place: look at the access list of the "
              "node.")
        .arg(facts.neededGroup);
}
