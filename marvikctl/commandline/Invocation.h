#pragma once

#include <chrono>
#include <QString>
#include <QStringList>

/// What the user has asked for: one command with its options, checked as far as possible without a
/// camera.
struct Invocation
{
    QString command;
    QStringList arguments; ///< after the command
    QStringList serials;   ///< beginnings of serial numbers
    bool all = false;
    bool json = false;
    bool jsonProgress = false;
    bool dryRun = false;
    bool quiet = false;
    bool verbose = false;
    bool reinstall = false;
    bool once = false;
    bool redact = false;
    bool site = false;
    int parallel = 1;
    QString model;
    QString output; ///< file; empty for the default
    std::chrono::milliseconds timeout{5000};
};
