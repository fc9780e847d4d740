#include "ObservedSettings.h"

#include <array>

using Model = SettingsModel;

namespace {

const std::array<const char*, 4> kSliders{"brightSlider", "contrastSlider", "saturationSlider",
                                          "sharpnessSlider"};
const std::array<const char*, 4> kPresets{"btnStandardMode", "btnBrightMode", "btnVividMode",
                                          "btnCustomMode"};
const std::array<const char*, 4> kKeys{"bright", "contrast", "saturation", "sharpness"};
const std::array<const char*, 4> kControls{"brightness", "contrast", "saturation", "sharpness"};
const QString kProbe = QStringLiteral("5000");

} // namespace

Model::Registers ObservedSettings::registersOf(PluggedCamera& camera)
{
    const std::multimap<std::string, std::string> all = camera.registers();
    const auto number = [&all](const char* name) { return std::stoi(all.find(name)->second); };
    Model::Registers registers;
    registers.autoFraming = number("autoFrameSwicth");
    registers.frameMaster = number("frameMaster");
    registers.subMode = number("autoFrameMode");
    registers.sensitivity = number("PickupSensitivity");
    registers.view = number("CameraView");
    registers.mirror = number("HorizontalMirror");
    for (std::size_t i = 0; i < kControls.size(); ++i)
        registers.picture[i] = number(kControls[i]);
    return registers;
}

Model::Page ObservedSettings::shownPage(const CameraDesk& desk)
{
    Model::Page page;
    page.intelligent = desk.isChecked("btnIntelligent");
    page.framing =
        desk.isChecked("rbtnFrameMaster") ? Model::Framing::FrameMaster : Model::Framing::Automatic;
    page.individual = desk.isChecked("rbtnDivisionMaster");
    page.view = 0;
    for (const int view : {60, 90, 120}) {
        if (desk.isChecked(qPrintable(QStringLiteral("btn%1").arg(view))))
            page.view = view;
    }
    page.sensitivity = 0;
    for (const auto& [name, level] :
         {std::pair{"btnLow", 30}, std::pair{"btnMiddle", 50}, std::pair{"btnHeigh", 80}}) {
        if (desk.isChecked(name))
            page.sensitivity = level;
    }
    page.mirror = desk.isChecked("btnHorizontalMirror");
    for (std::size_t i = 0; i < kPresets.size(); ++i) {
        if (desk.isChecked(kPresets[i]))
            page.imageMode = static_cast<int>(i);
        page.sliders[i] = desk.sliderValue(kSliders[i]);
    }
    constexpr std::array marked{std::pair{"btnLow", Model::Sensitivity},
                                std::pair{"btn60", Model::View},
                                std::pair{"btnHorizontalMirror", Model::Mirror},
                                std::pair{"btnIntelligent", Model::Intelligent}};
    for (const auto& [name, value] : marked) {
        if (!desk.find(name)->accessibleDescription().isEmpty())
            page.unknown << value;
    }
    for (std::size_t i = 0; i < kSliders.size(); ++i) {
        if (!desk.find(kSliders[i])->isEnabled())
            page.unknown << static_cast<int>(i);
    }
    return page;
}

QMap<QString, Model::Saved> ObservedSettings::savedFile(const SavedSettings& stored)
{
    QMap<QString, Model::Saved> file;
    for (const QString& group : stored.groups()) {
        const QMap<QString, int> values = stored.group(group);
        Model::Saved saved;
        for (std::size_t i = 0; i < kKeys.size(); ++i)
            saved.picture[i] = values.value(QLatin1String(kKeys[i]), -1);
        saved.imageMode = values.value(QStringLiteral("imagemode"), -1);
        file.insert(group, saved);
    }
    return file;
}

QStringList ObservedSettings::requestsOf(PluggedCamera& camera)
{
    QStringList requests = requestsTo(camera);
    requests.removeAll(kProbe);
    return requests;
}
