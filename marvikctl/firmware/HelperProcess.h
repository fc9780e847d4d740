#pragma once

#include "Result.h"

#include <memory>
#include <QCoreApplication>
#include <QJsonObject>
#include <QProcess>
#include <QString>

/// The helper program: what needs the network or the system bus, whose libraries would double the
/// time that every other command takes to start.
class HelperProcess
{
    Q_DECLARE_TR_FUNCTIONS(HelperProcess)

public:
    /// Asks the update service for one model.
    [[nodiscard]] static Result<QJsonObject> check(const QString& model, const QString& version);

    /// While an object of this class exists, the computer does not go to sleep by itself.
    class SleepHold
    {
    public:
        explicit SleepHold(const QString& why);
        ~SleepHold();
        SleepHold(const SleepHold&) = delete;
        SleepHold& operator=(const SleepHold&) = delete;

        /// Lets the computer sleep again.
        /// @return why it could have slept before; empty when it could not
        QString release();

    private:
        QProcess m_process;
    };

private:
    [[nodiscard]] static QString program();
};
