#pragma once

#include "CameraLink.h"
#include "Invocation.h"
#include "Result.h"

#include <QCoreApplication>
#include <vector>

/// The cameras that a command works on. The links are closed.
class Selection
{
    Q_DECLARE_TR_FUNCTIONS(Selection)

public:
    /// One camera needs no selection; of several the user has to choose. Serial numbers are asked
    /// for only where they decide.
    [[nodiscard]] static Result<std::vector<CameraLink>> choose(const Invocation& invocation);
    /// All cameras, or those that were chosen, for commands that look only.
    [[nodiscard]] static Result<std::vector<CameraLink>> chooseOrAll(const Invocation& invocation);

    /// A camera, as far as it is known, for the choice by serial number.
    struct Candidate
    {
        QString serial; ///< empty when the camera does not answer
        QString title;
    };
    /// The index of the candidate that @p wanted names: its serial number, or the only one that
    /// begins so.
    [[nodiscard]] static Result<int> match(const QList<Candidate>& candidates,
                                           const QString& wanted);

private:
    [[nodiscard]] static std::vector<CameraLink> links(const Invocation& invocation);
    [[nodiscard]] static QList<Candidate> identify(std::vector<CameraLink>& links);
    [[nodiscard]] static QString listOf(const QList<Candidate>& candidates);
};
