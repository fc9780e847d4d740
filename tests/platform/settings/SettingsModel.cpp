#include "SettingsModel.h"

#include <algorithm>

namespace {

constexpr int kMinimum = 78;
constexpr int kMaximum = 178;
constexpr int kCustom = 3;

const std::array<SettingsModel::Picture, 3> kPresets{
    {{128, 128, 128, 128}, {138, 128, 130, 120}, {130, 128, 140, 120}}};

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
    return a.mirror != b.mirror || a.view != b.view || a.picture != b.picture ||
           a.autoFraming != b.autoFraming || a.frameMaster != b.frameMaster ||
           a.subMode != b.subMode || a.sensitivity != b.sensitivity ||
           m_stored.intelligent != m_edited.intelligent;
}

void SettingsModel::setView(int degrees)
{
    registers().view = degrees;
    m_edited.camera.view = degrees;
    m_page.view = degrees;
}

void SettingsModel::setSlider(Slider slider, int value)
{
    registers().picture[slider] = value;
    m_edited.camera.picture[slider] = value;
    m_page.sliders[slider] = std::clamp(value, kMinimum, kMaximum);
}

void SettingsModel::setSensitivity(int level)
{
    registers().sensitivity = level;
    m_edited.camera.sensitivity = level;
    m_page.sensitivity = markedLevel(level);
}

void SettingsModel::setMirror(bool on)
{
    registers().mirror = on ? 1 : 0;
    m_edited.camera.mirror = on ? 1 : 0;
    m_page.mirror = on;
}

void SettingsModel::setSubMode(bool individual)
{
    if (m_page.individual == individual)
        return;
    m_page.individual = individual;
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
    registers().autoFraming = automatic ? 1 : 0;
    registers().frameMaster = automatic ? 0 : 1;
    if (automatic) {
        m_edited.camera.subMode = registers().subMode;
        setSubMode(registers().subMode != 0);
    }
    m_edited.camera.autoFraming = registers().autoFraming;
    m_edited.camera.frameMaster = registers().frameMaster;
}

void SettingsModel::doIntelligent(bool on, bool automatic)
{
    m_edited.intelligent = on ? 1 : 0;
    m_page.intelligent = on;
    if (on) {
        setView(120);
        if (automatic) {
            markFraming(Framing::Automatic);
            m_edited.camera.subMode = registers().subMode;
            if (registers().subMode == 0)
                setSubMode(false);
        } else {
            markFraming(Framing::FrameMaster);
        }
    } else if (registers().autoFraming != 0) {
        registers().autoFraming = 0;
        m_edited.camera.autoFraming = 0;
    } else {
        registers().frameMaster = 0;
        m_edited.camera.frameMaster = 0;
    }
}

void SettingsModel::open(const QString& serial)
{
    m_open = serial;
    m_stored.camera = registers();
    m_stored.imageMode = 0;
    const auto saved = m_file.constFind(serial);
    if (saved != m_file.constEnd()) {
        m_stored.camera.picture = saved->picture;
        m_stored.imageMode = saved->imageMode;
    }
    m_stored.intelligent =
        m_stored.camera.autoFraming != 0 || m_stored.camera.frameMaster != 0 ? 1 : 0;
    m_edited = m_stored;
    showEdited();
}

void SettingsModel::returnToPage()
{
    showEdited();
}

void SettingsModel::showEdited()
{
    const Values shown = m_edited;
    m_page.imageMode = shown.imageMode;
    for (const Slider slider : kSliders)
        setSlider(slider, shown.camera.picture[slider]);
    m_page.intelligent = shown.intelligent != 0;
    if (shown.camera.autoFraming != 0) {
        markFraming(Framing::Automatic);
        setSubMode(shown.camera.subMode != 0);
    } else if (shown.camera.frameMaster != 0) {
        markFraming(Framing::FrameMaster);
    }
    m_page.sensitivity = markedLevel(shown.camera.sensitivity);
    setView(shown.camera.view);
    setMirror(shown.camera.mirror == 1);
    takeFraming();
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
    if (!m_page.intelligent)
        setView(degrees);
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
    m_file[m_open] = {m_edited.camera.picture, m_edited.imageMode};
    m_stored = m_edited;
}

void SettingsModel::reset()
{
    choosePreset(0);
    setView(120);
    doIntelligent(true, true);
    m_page.individual = false;
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
        if (camera->plugged && m_file.contains(camera.key()))
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
