#pragma once

#include "CameraLink.h"
#include "Report.h"
#include "WritePlan.h"

#include <QCoreApplication>

/// Gives a camera the settings that are wanted: all of them or none. What was written is read back;
/// after any failure what had been written is put back.
class SettingsWriter
{
    Q_DECLARE_TR_FUNCTIONS(SettingsWriter)

public:
    enum class Mode { Write, DryRun };

    /// @param link open
    static void apply(CameraLink& link, const SettingValues& wanted, Mode mode,
                      CameraResult& result);

private:
    [[nodiscard]] static std::optional<Failure> write(CameraLink& link,
                                                      const std::vector<RegisterWrite>& writes,
                                                      std::vector<RegisterWrite>& done);
    [[nodiscard]] static std::optional<Failure> readBack(CameraLink& link,
                                                         const std::vector<RegisterWrite>& writes);
    [[nodiscard]] static std::optional<Failure>
    putBack(CameraLink& link, const std::vector<RegisterWrite>& done, const RegisterValues& before);
    static void describe(const RegisterValues& before, const std::vector<RegisterWrite>& writes,
                         CameraResult& result);
};
