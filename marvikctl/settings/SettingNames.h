#pragma once

#include "Register.h"
#include "Result.h"

#include <optional>
#include <QCoreApplication>
#include <QJsonValue>
#include <QMap>
#include <QString>
#include <QStringList>
#include <vector>

/// A setting as a user names it. Most are one register of the camera; framing is three, and a
/// preset is all values of the picture.
struct SettingKey
{
    enum class Kind { Picture, Preset, Framing, Device };
    struct Value
    {
        int value;
        QString name;
    };

    Kind kind = Kind::Device;
    QString name;
    PictureProperty property = PictureProperty::Brightness; ///< of a picture value
    DeviceSetting setting = DeviceSetting::CameraView;      ///< of a setting over HID
    std::vector<Value> values;                              ///< empty for a picture value

    /// The registers that it consists of.
    [[nodiscard]] Registers registers() const;
};

/// Values by the names of their keys.
using SettingValues = QMap<QString, int>;

/// The names of settings and of their values, made of the tables of the settings.
class SettingNames
{
    Q_DECLARE_TR_FUNCTIONS(SettingNames)

public:
    /// The values of the key "framing".
    static constexpr int kFramingOff = 0;
    static constexpr int kFramingGroup = 1;
    static constexpr int kFramingIndividual = 2;
    static constexpr int kFramingDivision = 3;
    /// The value of the key "preset" for a picture that is none of the presets.
    static constexpr int kCustomPreset = 3;
    /// The view that framing needs.
    static constexpr int kWidestView = 120;

    /// All keys, in the order in which they are shown.
    [[nodiscard]] static const std::vector<SettingKey>& keys();
    [[nodiscard]] static QStringList names();
    /// The key of this name, or why there is none, with the nearest name.
    [[nodiscard]] static Result<const SettingKey*> find(const QString& name);
    /// The names of the values that can be set, for help and completion.
    [[nodiscard]] static QStringList valueNames(const SettingKey& key);

    /// Reads "brightness=60%", "fov=90"...; a key may be given once.
    [[nodiscard]] static Result<SettingValues> parse(const QStringList& assignments);
    [[nodiscard]] static Result<int> parseValue(const SettingKey& key, const QString& text);
    /// Why these values exclude each other, whatever a camera has now.
    [[nodiscard]] static std::optional<Failure> conflict(const SettingValues& values);

    /// For people: "60%", "on", "group". A value without a name is a number.
    [[nodiscard]] static QString format(const SettingKey& key, int value);
    /// For programs: a number for a picture value and for degrees, else the name.
    [[nodiscard]] static QJsonValue toJson(const SettingKey& key, int value);

    /// What the registers mean for a key; nothing when one of them is missing.
    [[nodiscard]] static std::optional<int> valueOf(const SettingKey& key,
                                                    const RegisterValues& registers);
    /// All keys whose registers are there.
    [[nodiscard]] static SettingValues valuesOf(const RegisterValues& registers);
    /// All registers of these keys.
    [[nodiscard]] static Registers registersOf(const QStringList& names);
};
