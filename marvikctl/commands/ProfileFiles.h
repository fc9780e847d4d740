#pragma once

#include "Invocation.h"
#include "ProfileFolders.h"
#include "Report.h"

#include <QCoreApplication>

/// What "profile" does with files alone: list, show, export, import, assign, unassign.
class ProfileFiles
{
    Q_DECLARE_TR_FUNCTIONS(ProfileFiles)

public:
    ProfileFiles(const Invocation& invocation, Report& report);

    void list();
    /// @param argument the name of a profile; for import the path of a file
    void show(const QString& argument);
    void exportTo(const QString& argument);
    void import(const QString& argument);
    void assign(const QString& argument);
    void unassign();

private:
    /// An empty name removes the rules.
    void changeRules(const QString& profile);
    void setChanged(bool hasChanged);

    const Invocation& m_invocation;
    Report& m_report;
    ProfileFolders m_folders;
};
