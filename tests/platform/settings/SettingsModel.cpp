#include "SettingsModel.h"

#include <algorithm>

namespace {

constexpr int kMinimum = 78;
constexpr int kMaximum = 178;
constexpr int kCustom = 3;

const std::array<SettingsModel::Picture, 3> kPresets{
    {{128, 128, 128, 128}, {138, 128, 130, 120}, {130, 128, 140, 120}}};

// Read commands.
constexpr int kVersion = 0x5001;
constexpr int kSerial = 0x5010;
constexpr int kStream = 0x5020;
constexpr int kSubMode = 0x5030;
constexpr int kFrameMaster = 0x5040;
constexpr int kSensitivity = 0x5070;
constexpr int kAutoFraming = 0x5080;
constexpr int kMirror = 0x5090;
constexpr int kView = 0x50A0;

constexpr int kMostSilentReads = 2;

/// The level whose button is selected for a value, 0 for none.
int markedLevel(int sensitivity)
{
    if (sensitivity < 31)
        return 30;
    if (sensitivity <= 50)
        return 50;
    return sensitivity <= 80 ? 80 : 0;
}

constexpr std::array<SettingsModel::Slider, 4> kSliders{
    SettingsModel::Bright, SettingsModel::Contrast, SettingsModel::Saturation,
    SettingsModel::Sharpness};

} // namespace

bool SettingsModel::isEdited() const
{
    const Registers& a = m_stored.camera;
    const Registers& b = m_edited.camera;
    const auto differs = [this](int value, int stored, int edited) {
        return !isUnknown(value) && stored != edited;
    };
    const bool picture =
        std::any_of(kSliders.begin(), kSliders.end(), [&differs, &a, &b](Slider slider) {
            return differs(slider, a.picture[slider], b.picture[slider]);
        });
    return picture || differs(Mirror, a.mirror, b.mirror) || differs(View, a.view, b.view) ||
           differs(AutoFraming, a.autoFraming, b.autoFraming) ||
           differs(FrameMaster, a.frameMaster, b.frameMaster) ||
           differs(SubMode, a.subMode, b.subMode) ||
           differs(Sensitivity, a.sensitivity, b.sensitivity) ||
           differs(Intelligent, m_stored.intelligent, m_edited.intelligent);
}

/// The file would have nothing for a picture value that is not known.
bool SettingsModel::canBeSaved() const
{
    const bool isComplete = m_file.contains(m_open) ||
                            std::none_of(kSliders.begin(), kSliders.end(),
                                         [this](Slider slider) { return isUnknown(slider); });
    return m_loaded && m_serialRead && isComplete;
}

SettingsModel::Page SettingsModel::page() const
{
    Page page = m_page;
    page.unknown = m_unknown;
    // The page has no mark for these.
    page.unknown -= QSet<int>{AutoFraming, FrameMaster, SubMode};
    return page;
}

std::optional<int> SettingsModel::read(int command, int value)
{
    if (m_silentReads >= kMostSilentReads)
        return std::nullopt;
    m_reads << QString::number(command, 16).toUpper();
    const bool isLost = faults().lost.contains(command);
    m_silentReads = isLost ? m_silentReads + 1 : 0;
    if (isLost || faults().refused.contains(command))
        return std::nullopt;
    return value;
}

void SettingsModel::readIdentity()
{
    m_silentReads = 0;
    read(kVersion, 0);
    m_serialRead = read(kSerial, 0).has_value();
}

void SettingsModel::readStream()
{
    read(kStream, 0);
}

std::optional<int> SettingsModel::refreshSubMode()
{
    const std::optional<int> value = read(kSubMode, registers().subMode);
    if (!value && isUnknown(SubMode))
        return std::nullopt;
    if (isUnknown(SubMode)) {
        m_unknown.remove(SubMode);
        m_unread.remove(SubMode);
        m_stored.camera.subMode = *value;
    }
    m_edited.camera.subMode = value.value_or(m_edited.camera.subMode);
    return m_edited.camera.subMode;
}

void SettingsModel::setUnknown(int value)
{
    m_unknown.insert(value);
    m_unread.insert(value);
}

void SettingsModel::setView(int degrees)
{
    if (degrees == 60 || degrees == 90 || degrees == 120)
        m_page.view = degrees;
    if (isOnlyShown(View))
        return;
    m_unknown.remove(View);
    registers().view = degrees;
    m_edited.camera.view = degrees;
}

void SettingsModel::setSlider(Slider slider, int value)
{
    m_page.sliders[slider] = std::clamp(value, kMinimum, kMaximum);
    if (isOnlyShown(slider))
        return;
    m_unknown.remove(slider);
    m_edited.camera.picture[slider] = value;
    if (m_isVideoOpen && faults().hasAmplifier)
        registers().picture[slider] = value;
}

void SettingsModel::setSensitivity(int level)
{
    m_page.sensitivity = markedLevel(level);
    if (isOnlyShown(Sensitivity))
        return;
    m_unknown.remove(Sensitivity);
    registers().sensitivity = level;
    m_edited.camera.sensitivity = level;
}

void SettingsModel::setMirror(bool on)
{
    m_page.mirror = on;
    if (isOnlyShown(Mirror))
        return;
    m_unknown.remove(Mirror);
    registers().mirror = on ? 1 : 0;
    m_edited.camera.mirror = on ? 1 : 0;
}

void SettingsModel::setSubMode(bool individual)
{
    if (m_page.individual == individual)
        return;
    m_page.individual = individual;
    if (isOnlyShown(SubMode))
        return;
    m_unknown.remove(SubMode);
    registers().subMode = individual ? 1 : 0;
    m_edited.camera.subMode = individual ? 1 : 0;
}

void SettingsModel::markFraming(Framing framing)
{
    m_page.framing = framing;
    m_framingPending = true;
}

void SettingsModel::takeFraming()
{
    if (!m_framingPending)
        return;
    m_framingPending = false;
    const bool automatic = m_page.framing == Framing::Automatic;
    m_unknown -= QSet<int>{AutoFraming, FrameMaster};
    registers().autoFraming = automatic ? 1 : 0;
    registers().frameMaster = automatic ? 0 : 1;
    if (automatic) {
        if (const std::optional<int> subMode = refreshSubMode())
            setSubMode(*subMode != 0);
    }
    m_edited.camera.autoFraming = registers().autoFraming;
    m_edited.camera.frameMaster = registers().frameMaster;
}

void SettingsModel::doIntelligent(bool on, bool automatic)
{
    m_page.intelligent = on;
    if (isOnlyShown(Intelligent))
        return;
    m_unknown.remove(Intelligent);
    m_edited.intelligent = on ? 1 : 0;
    if (on) {
        setView(120);
        if (automatic) {
            markFraming(Framing::Automatic);
            if (refreshSubMode() == 0)
                setSubMode(false);
        } else {
            markFraming(Framing::FrameMaster);
        }
        readStream();
        return;
    }
    const int autoFraming =
        read(kAutoFraming, registers().autoFraming).value_or(m_edited.camera.autoFraming);
    read(kFrameMaster, registers().frameMaster);
    if (autoFraming != 0) {
        m_unknown.remove(AutoFraming);
        registers().autoFraming = 0;
        m_edited.camera.autoFraming = 0;
    } else {
        m_unknown.remove(FrameMaster);
        registers().frameMaster = 0;
        m_edited.camera.frameMaster = 0;
    }
}

void SettingsModel::open(const QString& serial)
{
    m_open = serial;
    m_loaded = false;
    m_stored = {};
    m_edited = {};
    m_unknown.clear();
    m_unread.clear();
    readIdentity();
    m_page.preview = true;
    startPlay();
}

void SettingsModel::returnToPage()
{
    readIdentity();
    startPlay();
}

void SettingsModel::startPlay()
{
    m_isVideoOpen = !faults().isVideoRefused;
    m_page.preview = m_page.preview && m_isVideoOpen && !faults().isVideoTaken;
    if (!m_isVideoOpen)
        return;
    if (!m_loaded)
        load();
    showEdited();
    readStream();
    takeFraming();
}

void SettingsModel::togglePreview()
{
    if (m_page.preview) {
        m_page.preview = false;
        readStream();
        return;
    }
    m_isVideoOpen = !faults().isVideoRefused;
    if (!m_isVideoOpen)
        return;
    m_page.preview = !faults().isVideoTaken;
    if (!m_loaded) {
        load();
        showEdited();
        takeFraming();
    }
    if (m_page.preview)
        readStream();
}

void SettingsModel::loadSetting(Setting setting, int command, int value, int& stored)
{
    const std::optional<int> answer = read(command, value);
    stored = answer.value_or(0);
    if (!answer)
        setUnknown(setting);
}

void SettingsModel::load()
{
    m_loaded = true;
    const Registers& camera = registers();
    Registers& stored = m_stored.camera;
    const auto saved = m_file.constFind(m_open);
    m_stored.imageMode = 0;
    if (m_serialRead && saved != m_file.constEnd()) {
        stored.picture = saved->picture;
        m_stored.imageMode = saved->imageMode;
    } else if (faults().hasAmplifier) {
        stored.picture = camera.picture;
    } else {
        stored.picture = {};
        for (const Slider slider : kSliders)
            setUnknown(slider);
    }
    loadSetting(AutoFraming, kAutoFraming, camera.autoFraming, stored.autoFraming);
    loadSetting(FrameMaster, kFrameMaster, camera.frameMaster, stored.frameMaster);
    loadSetting(SubMode, kSubMode, camera.subMode, stored.subMode);
    loadSetting(Sensitivity, kSensitivity, camera.sensitivity, stored.sensitivity);
    loadSetting(View, kView, camera.view, stored.view);
    loadSetting(Mirror, kMirror, camera.mirror, stored.mirror);
    if (isUnknown(AutoFraming) || isUnknown(FrameMaster))
        setUnknown(Intelligent);
    m_stored.intelligent = stored.autoFraming != 0 || stored.frameMaster != 0 ? 1 : 0;
    m_edited = m_stored;
}

void SettingsModel::showEdited()
{
    const Values shown = m_edited;
    m_isShowing = true;
    m_page.imageMode = shown.imageMode;
    for (const Slider slider : kSliders) {
        if (!isUnknown(slider))
            setSlider(slider, shown.camera.picture[slider]);
    }
    m_page.intelligent =
        !isUnknown(Intelligent) && (shown.camera.autoFraming != 0 || shown.camera.frameMaster != 0);
    if (m_page.intelligent && shown.camera.autoFraming != 0) {
        markFraming(Framing::Automatic);
        setSubMode(shown.camera.subMode != 0);
    } else if (m_page.intelligent) {
        markFraming(Framing::FrameMaster);
    }
    m_page.sensitivity = isUnknown(Sensitivity) ? 0 : markedLevel(shown.camera.sensitivity);
    if (isUnknown(View))
        m_page.view = 0;
    else
        setView(shown.camera.view);
    if (isUnknown(Mirror))
        m_page.mirror = false;
    else
        setMirror(shown.camera.mirror == 1);
    m_isShowing = false;
}

void SettingsModel::switchIntelligent()
{
    const bool on = !m_page.intelligent;
    if (!on)
        m_page.lastWasAutomatic = m_page.framing == Framing::Automatic;
    doIntelligent(on, m_page.lastWasAutomatic);
    takeFraming();
}

void SettingsModel::chooseFraming(Framing framing)
{
    markFraming(framing);
    takeFraming();
}

void SettingsModel::chooseSubMode(bool individual)
{
    setSubMode(individual);
}

void SettingsModel::chooseView(int degrees)
{
    if (m_page.intelligent)
        return;
    setView(degrees);
    if (degrees == 60)
        readStream();
}

void SettingsModel::chooseSensitivity(int level)
{
    setSensitivity(level);
}

void SettingsModel::switchMirror()
{
    setMirror(!m_page.mirror);
}

void SettingsModel::choosePreset(int mode)
{
    m_page.imageMode = mode;
    m_edited.imageMode = mode;
    if (mode == kCustom)
        return;
    for (const Slider slider : kSliders)
        setSlider(slider, kPresets[static_cast<std::size_t>(mode)][slider]);
}

void SettingsModel::moveSlider(Slider slider, int value)
{
    if (value != m_page.sliders[slider])
        setSlider(slider, value);
    choosePreset(kCustom);
}

void SettingsModel::stepSlider(Slider slider, int value)
{
    value = std::clamp(value, kMinimum, kMaximum);
    if (value != m_page.sliders[slider])
        moveSlider(slider, value);
}

void SettingsModel::save()
{
    if (!canBeSaved())
        return;
    Saved& saved = m_file[m_open];
    for (const Slider slider : kSliders) {
        if (!isUnknown(slider))
            saved.picture[slider] = m_edited.camera.picture[slider];
    }
    saved.imageMode = m_edited.imageMode;
    m_stored = m_edited;
    m_unread = m_unknown;
}

void SettingsModel::reset()
{
    choosePreset(0);
    setView(120);
    doIntelligent(true, true);
    m_page.individual = false;
    m_unknown.remove(SubMode);
    registers().subMode = 0;
    m_edited.camera.subMode = 0;
    setSensitivity(50);
    setMirror(false);
    takeFraming();
}

void SettingsModel::back()
{
    if (!isEdited())
        m_open.clear();
}

void SettingsModel::exit()
{
    const Values saved = m_stored;
    // What the camera had cannot be restored where it is not known.
    m_unknown = m_unread;
    m_isShowing = true;
    doIntelligent(saved.intelligent != 0, saved.camera.autoFraming != 0);
    if (saved.camera.autoFraming != 0) {
        m_page.framing = Framing::Automatic;
        setSubMode(saved.camera.subMode != 0);
    }
    setSensitivity(saved.camera.sensitivity);
    setMirror(saved.camera.mirror == 1);
    setView(saved.camera.view);
    for (const Slider slider : kSliders)
        setSlider(slider, saved.camera.picture[slider]);
    m_isShowing = false;
    m_edited = m_stored;
    takeFraming();
    m_open.clear();
}

void SettingsModel::saveAndExit()
{
    save();
    m_open.clear();
}

/// The list gives every camera in it its saved picture.
void SettingsModel::applySaved()
{
    for (auto camera = m_cameras.begin(); camera != m_cameras.end(); ++camera) {
        const Faults& faults = camera->faults;
        const bool isNamed = !faults.lost.contains(kSerial) && !faults.refused.contains(kSerial);
        if (camera->plugged && isNamed && faults.hasAmplifier && !faults.isVideoRefused &&
            m_file.contains(camera.key()))
            camera->registers.picture = m_file.value(camera.key()).picture;
    }
}

void SettingsModel::unplug(const QString& serial)
{
    m_cameras[serial].plugged = false;
    m_cameras[serial].registers.picture = Registers().picture; // it keeps all but the picture
    if (!isOpen())
        applySaved();
    else if (m_open == serial)
        m_open.clear();
}

void SettingsModel::plug(const QString& serial)
{
    m_cameras[serial].plugged = true;
    if (!isOpen())
        applySaved();
}

void SettingsModel::change(const QString& serial, const Registers& registers)
{
    m_cameras[serial].registers = registers;
}

void SettingsModel::trouble(const QString& serial, const Faults& faults)
{
    m_cameras[serial].faults = faults;
}
