#pragma once

#include <QCoreApplication>
#include <QString>

/// What a user without access to a device node has to do; plain logic.
class PermissionAdvice
{
    Q_DECLARE_TR_FUNCTIONS(PermissionAdvice)

public:
    struct Facts
    {
        bool isRuleInstalled = false;
        QString user;
        QString neededGroup;    ///< that the rules give the node to
        QString nodeGroup;      ///< that the node has now
        bool isInGroup = false; ///< the user's account is in neededGroup
        bool isActive = false;  ///< this session has neededGroup
    };

    [[nodiscard]] static QString hint(const Facts& facts);
};
