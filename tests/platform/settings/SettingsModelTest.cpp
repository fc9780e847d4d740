#include "SettingsModel.h"
#include "CameraDesk.h"
#include "ObservedSettings.h"
#include "PendingTimers.h"
#include "SettingsModelTexts.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamResetDialog.h"
#include "SvtaParamSaveDialog.h"
#include "TransPrewBtn.h"

#include <functional>
#include <memory>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>
#include <random>

using Pages = SvtaPagesView;
using Model = SettingsModel;
using SettingsModelTexts::described;

namespace {

constexpr int kDefaultSteps = 10000;
constexpr unsigned kDefaultSeed = 20261121;
constexpr int kDebounceMs = 800;

const QStringList kSerials{QStringLiteral("SVAA009500551"), QStringLiteral("SVAA009500552")};
const std::array<const char*, 4> kSliders{"brightSlider", "contrastSlider", "saturationSlider",
                                          "sharpnessSlider"};
const std::array<const char*, 4> kPresets{"btnStandardMode", "btnBrightMode", "btnVividMode",
                                          "btnCustomMode"};
/// Commands by which the program reads.
constexpr std::array kReads{0x5001, 0x5010, 0x5020, 0x5030, 0x5040, 0x5070, 0x5080, 0x5090, 0x50A0};
const QString kSaved = QStringLiteral("Successfully saved");
const QString kSaveFailed = QStringLiteral("Save failed ， please try it again");
const std::array<const char*, 4> kControls{"brightness", "contrast", "saturation", "sharpness"};

void cause(const Model::Faults& faults, PluggedCamera& camera)
{
    const auto add = [&camera](const char* fault, int command) {
        camera.addFault(QStringLiteral("%1 cmd=0x%2")
                            .arg(QLatin1String(fault))
                            .arg(command, 0, 16)
                            .toStdString());
    };
    camera.clearFaults();
    for (const int command : faults.refused)
        add("status 1", command);
    for (const int command : faults.lost)
        add("readerror times=1000000", command); // an error comes without the wait of a time-out
    if (faults.isVideoTaken)
        camera.addFault("busy");
    if (faults.isVideoRefused)
        camera.addFault("denied");
    camera.setValue("amp", faults.hasAmplifier ? 1 : 0);
}

} // namespace

/// Random use of two cameras, which refuse or lose reads at times and whose video cannot always be
/// opened, compared with a model. After every step the registers of both cameras, the saved file,
/// the page, the reads and whether there are edits must agree.
///
/// MARVIK_MODEL_SEED and MARVIK_MODEL_STEPS change seed and length of the run.
class SettingsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void programAgreesWithTheModelAfterEveryStep();

private:
    /// Executes a step on the program, which returns whether it was possible, and then on the
    /// model.
    struct Step
    {
        QString name;
        std::function<bool()> hand;
        std::function<void()> model = [] {};
    };

    [[nodiscard]] int upTo(int last)
    {
        return std::uniform_int_distribution<int>(0, last)(m_random);
    }
    [[nodiscard]] bool oneIn(int count) { return upTo(count - 1) == 0; }

    [[nodiscard]] Step nextStep();
    [[nodiscard]] Step stepOnTheList();
    [[nodiscard]] Step stepOnThePage();
    [[nodiscard]] Step stepOnThePageWithoutValues();
    [[nodiscard]] Step sliderStep();
    [[nodiscard]] Step framingStep();
    [[nodiscard]] Step viewStep();
    [[nodiscard]] Step presetStep();
    [[nodiscard]] Step saveStep();
    [[nodiscard]] Step resetStep();
    [[nodiscard]] Step backStep();
    [[nodiscard]] Step informationStep();
    [[nodiscard]] Step previewStep();
    [[nodiscard]] Step plugStep(int camera);
    [[nodiscard]] Step changeStep(int camera);
    [[nodiscard]] Step troubleStep(int camera);
    [[nodiscard]] Model::Faults anyFaults();

    /// Executes the deferred steps now.
    static void hurry();
    [[nodiscard]] int pluggedCount() const;
    /// The differences; empty when there are none.
    [[nodiscard]] QStringList differences();

    std::unique_ptr<SavedSettings> m_saved;
    std::vector<std::unique_ptr<PluggedCamera>> m_cameras;
    std::unique_ptr<CameraDesk> m_desk;
    Model m_model;
    std::mt19937 m_random;
};

void SettingsModelTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
    m_model = Model();
    for (const QString& serial : kSerials) {
        m_cameras.push_back(std::make_unique<PluggedCamera>(
            std::initializer_list<PluggedCamera::Option>{{"serial", serial.toStdString()}}));
        m_model.add(serial);
    }
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
}

void SettingsModelTest::cleanup()
{
    m_desk.reset();
    m_cameras.clear();
    m_saved.reset();
}

void SettingsModelTest::programAgreesWithTheModelAfterEveryStep()
{
    const bool isSeeded = qEnvironmentVariableIsSet("MARVIK_MODEL_SEED");
    const unsigned seed =
        isSeeded ? qEnvironmentVariable("MARVIK_MODEL_SEED").toUInt() : kDefaultSeed;
    const bool isCounted = qEnvironmentVariableIsSet("MARVIK_MODEL_STEPS");
    const int steps =
        isCounted ? qEnvironmentVariableIntValue("MARVIK_MODEL_STEPS") : kDefaultSteps;
    m_random.seed(seed);

    QElapsedTimer timer;
    timer.start();
    QMap<QString, int> counts;
    QStringList taken;
    for (int i = 0; i < steps; ++i) {
        const Step step = nextStep();
        taken << step.name;
        ++counts[step.name.section(QRegularExpression(QStringLiteral("[ ,]")), 0, 0)];
        for (const auto& camera : m_cameras)
            camera->forgetRequests();
        m_model.forgetReads();
        const bool done = step.hand();
        hurry();
        step.model();
        const QStringList wrong = done ? differences() : QStringList{"the step could not be taken"};
        if (!wrong.isEmpty()) {
            qWarning().noquote() << "steps of seed" << seed << '\n'
                                 << taken.join(QLatin1Char('\n'));
            QFAIL(qPrintable(QStringLiteral("step %1, %2:\n%3")
                                 .arg(i)
                                 .arg(step.name, wrong.join(QLatin1Char('\n')))));
        }
    }
    for (const auto& camera : m_cameras)
        QCOMPARE(camera->stats().violations, std::uint64_t{0});
    qInfo() << steps << "steps of seed" << seed << "in" << timer.elapsed() << "ms:" << counts;
}

void SettingsModelTest::hurry()
{
    // A step may defer another one.
    while (PendingTimers::fire(10) || PendingTimers::fire(100) || PendingTimers::fire(20)) {
    }
}

SettingsModelTest::Step SettingsModelTest::nextStep()
{
    if (!m_model.isOpen())
        return stepOnTheList();
    return m_model.isLoaded() ? stepOnThePage() : stepOnThePageWithoutValues();
}

int SettingsModelTest::pluggedCount() const
{
    int count = 0;
    for (const Model::Camera& camera : m_model.cameras())
        count += camera.plugged ? 1 : 0;
    return count;
}

SettingsModelTest::Step SettingsModelTest::stepOnTheList()
{
    const int camera = upTo(1);
    if (oneIn(40) || !m_model.cameras().value(kSerials[camera]).plugged)
        return plugStep(camera);
    if (oneIn(3))
        return changeStep(camera);
    if (oneIn(3))
        return troubleStep(camera);
    if (oneIn(8) && m_saved->exists()) {
        return {QStringLiteral("remove the file"),
                [this] { return QFile::remove(m_saved->path()); },
                [this] { m_model.removeFile(); }};
    }
    return {QStringLiteral("open %1").arg(camera),
            [this, camera] {
                if (!m_desk->clickCard(*m_cameras[static_cast<std::size_t>(camera)]))
                    return false;
                hurry();
                return m_desk->isOnPage(Pages::SettingPage);
            },
            [this, camera] { m_model.open(kSerials[camera]); }};
}

SettingsModelTest::Step SettingsModelTest::plugStep(int camera)
{
    const QString& serial = kSerials[camera];
    if (m_model.cameras().value(serial).plugged) {
        return {QStringLiteral("unplug %1").arg(camera),
                [this, camera] {
                    m_cameras[static_cast<std::size_t>(camera)]->unplug();
                    return m_desk->waitForCards(pluggedCount() - 1);
                },
                [this, serial] { m_model.unplug(serial); }};
    }
    return {QStringLiteral("plug %1").arg(camera),
            [this, camera] {
                m_cameras[static_cast<std::size_t>(camera)]->plug();
                return m_desk->waitForCards(pluggedCount() + 1);
            },
            [this, serial] { m_model.plug(serial); }};
}

/// A change by another program or by the camera's buttons.
SettingsModelTest::Step SettingsModelTest::changeStep(int camera)
{
    Model::Registers registers = m_model.cameras().value(kSerials[camera]).registers;
    const int framing = upTo(2);
    registers.autoFraming = framing == 1 ? 1 : 0;
    registers.frameMaster = framing == 2 ? 1 : 0;
    registers.subMode = upTo(1);
    registers.sensitivity =
        oneIn(2) ? std::array{30, 50, 80}[static_cast<std::size_t>(upTo(2))] : upTo(127);
    registers.view = std::array{60, 90, 120}[static_cast<std::size_t>(upTo(2))];
    registers.mirror = upTo(1);
    for (int& value : registers.picture)
        value = oneIn(4) ? upTo(255) : 78 + upTo(100);
    return {QStringLiteral("change %1 to %2").arg(camera).arg(described(registers)),
            [this, camera, registers] {
                PluggedCamera& changed = *m_cameras[static_cast<std::size_t>(camera)];
                changed.setValue("autoFrameSwicth", registers.autoFraming);
                changed.setValue("frameMaster", registers.frameMaster);
                changed.setValue("autoFrameMode", registers.subMode);
                changed.setValue("PickupSensitivity", registers.sensitivity);
                changed.setValue("CameraView", registers.view);
                changed.setValue("HorizontalMirror", registers.mirror);
                for (std::size_t i = 0; i < kControls.size(); ++i)
                    changed.setValue(kControls[i], registers.picture[i]);
                return true;
            },
            [this, camera, registers] { m_model.change(kSerials[camera], registers); }};
}

/// Whole cameras are as frequent as others, so that every step also meets one.
Model::Faults SettingsModelTest::anyFaults()
{
    Model::Faults faults;
    if (oneIn(2))
        return faults;
    faults.isVideoTaken = oneIn(5);
    faults.isVideoRefused = oneIn(5);
    faults.hasAmplifier = !oneIn(6);
    const bool isSilent = oneIn(8);
    for (const int command : kReads) {
        if (isSilent || oneIn(6))
            faults.lost << command;
        else if (oneIn(5))
            faults.refused << command;
    }
    return faults;
}

SettingsModelTest::Step SettingsModelTest::troubleStep(int camera)
{
    const Model::Faults faults = anyFaults();
    return {QStringLiteral("trouble %1: %2").arg(camera).arg(described(faults)),
            [this, camera, faults] {
                cause(faults, *m_cameras[static_cast<std::size_t>(camera)]);
                return true;
            },
            [this, camera, faults] { m_model.trouble(kSerials[camera], faults); }};
}

SettingsModelTest::Step SettingsModelTest::stepOnThePageWithoutValues()
{
    switch (upTo(9)) {
    case 0:
        return plugStep(upTo(1));
    case 1:
    case 2:
        return troubleStep(upTo(1));
    case 3:
        return informationStep();
    case 4:
    case 5:
        return saveStep();
    case 6:
    case 7:
        return previewStep();
    default:
        return backStep();
    }
}

SettingsModelTest::Step SettingsModelTest::stepOnThePage()
{
    const int kind = upTo(999);
    // Slow actions are rare.
    if (kind < 2)
        return plugStep(upTo(1));
    if (kind < 5)
        return previewStep();
    if (kind < 12)
        return informationStep();
    if (kind < 40)
        return backStep();
    if (kind < 45)
        return troubleStep(upTo(1));
    if (kind < 60)
        return resetStep();
    if (kind < 140)
        return saveStep();
    if (kind < 240)
        return framingStep();
    if (kind < 340)
        return viewStep();
    if (kind < 440)
        return presetStep();
    if (kind < 540)
        return {QStringLiteral("mirror"), [this] { return m_desk->click("btnHorizontalMirror"); },
                [this] { m_model.switchMirror(); }};
    if (kind < 640) {
        const auto which = static_cast<std::size_t>(upTo(2));
        const char* name = std::array{"btnLow", "btnMiddle", "btnHeigh"}[which];
        return {QStringLiteral("sensitivity %1").arg(name),
                [this, name] { return m_desk->click(name); },
                [this, which] {
                    m_model.chooseSensitivity(std::array{30, 50, 80}[which]);
                }};
    }
    return sliderStep();
}

SettingsModelTest::Step SettingsModelTest::sliderStep()
{
    const int number = upTo(3);
    const auto slider = static_cast<Model::Slider>(number);
    const char* name = kSliders[static_cast<std::size_t>(number)];
    if (m_model.isUnknown(number))
        return presetStep(); // the slider is disabled
    const int from = m_model.page().sliders[static_cast<std::size_t>(number)];
    switch (upTo(9)) {
    case 0:
    case 1: {
        // The mouse decides where a drag ends; the model takes over the value that was reached.
        const int value = 80 + upTo(96);
        return {QStringLiteral("drag %1 to %2").arg(name).arg(value),
                [this, name, value] {
                    return m_desk->dragSlider(name, value) &&
                           qAbs(m_desk->sliderValue(name) - value) <= 2;
                },
                [this, slider, name] { m_model.moveSlider(slider, m_desk->sliderValue(name)); }};
    }
    case 2:
    case 3: {
        const std::array keys{Qt::Key_Left,     Qt::Key_Right, Qt::Key_PageUp,
                              Qt::Key_PageDown, Qt::Key_Home,  Qt::Key_End};
        const std::array values{from - 1, from + 1, from + 10, from - 10, 78, 178};
        const auto which = static_cast<std::size_t>(upTo(5));
        return {QStringLiteral("key %1 on %2").arg(int(keys[which]), 0, 16).arg(name),
                [this, name, key = keys[which]] { return m_desk->pressKey(name, key); },
                [this, slider, value = values[which]] { m_model.stepSlider(slider, value); }};
    }
    case 4: {
        const int notches = upTo(1) == 0 ? -3 : 3;
        return {QStringLiteral("wheel on %1").arg(name),
                [this, name, notches] { return m_desk->turnWheel(name, notches); }};
    }
    default: {
        const int width = m_desk->find(name)->width();
        const int x = upTo(width - 1);
        const int value = 78 + qBound(0, x - 8, width - 16) * 100 / (width - 16);
        return {QStringLiteral("click %1 at %2").arg(name).arg(x),
                [this, name, x] { return m_desk->clickSlider(name, x); },
                [this, slider, value] { m_model.moveSlider(slider, value); }};
    }
    }
}

SettingsModelTest::Step SettingsModelTest::framingStep()
{
    const Model::Page& page = m_model.page();
    if (!page.intelligent || oneIn(3)) {
        return {QStringLiteral("intelligent"),
                [this] {
                    m_desk->unlockIntelligent();
                    return m_desk->click("btnIntelligent");
                },
                [this] { m_model.switchIntelligent(); }};
    }
    if (page.framing == Model::Framing::Automatic && oneIn(2)) {
        const bool individual = upTo(1) != 0;
        const char* name = individual ? "rbtnDivisionMaster" : "rbtnPersonalTrack";
        return {QStringLiteral("mode %1").arg(name), [this, name] { return m_desk->click(name); },
                [this, individual] { m_model.chooseSubMode(individual); }};
    }
    const bool automatic = upTo(1) != 0;
    const char* name = automatic ? "rbtnAutoFraming" : "rbtnFrameMaster";
    return {QStringLiteral("framing %1").arg(name), [this, name] { return m_desk->click(name); },
            [this, automatic] {
                m_model.chooseFraming(automatic ? Model::Framing::Automatic
                                                : Model::Framing::FrameMaster);
            }};
}

SettingsModelTest::Step SettingsModelTest::viewStep()
{
    const auto which = static_cast<std::size_t>(upTo(2));
    const char* name = std::array{"btn60", "btn90", "btn120"}[which];
    return {QStringLiteral("view %1").arg(name),
            [this, name] {
                if (!m_model.page().intelligent)
                    return m_desk->click(name);
                QTest::keyClick(m_desk->find(name), Qt::Key_Space);
                return !m_desk->find(name)->isEnabled();
            },
            [this, which] {
                m_model.chooseView(std::array{60, 90, 120}[which]);
            }};
}

SettingsModelTest::Step SettingsModelTest::presetStep()
{
    const int mode = upTo(3);
    const char* name = kPresets[static_cast<std::size_t>(mode)];
    return {QStringLiteral("preset %1").arg(name), [this, name] { return m_desk->click(name); },
            [this, mode] { m_model.choosePreset(mode); }};
}

SettingsModelTest::Step SettingsModelTest::saveStep()
{
    const auto ask = [this] {
        if (m_model.isLoaded())
            return m_desk->click("btnPramaSava");
        // The button is disabled, so that only the shortcut asks. It needs the desktop's focus,
        // which is not at its place yet when the dialog before was answered at once.
        m_desk->window().slotShowParamSaveDialog();
        return true;
    };
    if (oneIn(4)) {
        return {QStringLiteral("save, cancelled"),
                [this, ask] { return ask() && m_desk->answer<SvtaParamSaveDialog>("btnCancel"); }};
    }
    return {QStringLiteral("save"),
            [this, ask] {
                return ask() && m_desk->answer<SvtaParamSaveDialog>("btnConfirm") &&
                       m_desk->toast() == (m_model.canBeSaved() ? kSaved : kSaveFailed);
            },
            [this] { m_model.save(); }};
}

SettingsModelTest::Step SettingsModelTest::resetStep()
{
    if (oneIn(4)) {
        return {QStringLiteral("reset, cancelled"), [this] {
                    return m_desk->click("btnPramaReset") &&
                           m_desk->answer<SvtaParamResetDialog>("btnCancel");
                }};
    }
    return {QStringLiteral("reset"), [this] { return m_desk->reset(); },
            [this] { m_model.reset(); }};
}

SettingsModelTest::Step SettingsModelTest::backStep()
{
    const auto goBack = [this] {
        m_desk->unlockBack();
        return m_desk->click("backBtn");
    };
    if (!m_model.isEdited())
        return {QStringLiteral("back"), goBack, [this] { m_model.back(); }};
    switch (upTo(3)) {
    case 0:
        return {QStringLiteral("back, stayed"), [this, goBack] {
                    return goBack() && m_desk->answer<SvtaParamNotSaveDialog>("btnClose");
                }};
    case 1:
        return {QStringLiteral("back, saved"),
                [this, goBack] {
                    return goBack() && m_desk->answer<SvtaParamNotSaveDialog>("btnConfirm");
                },
                [this] { m_model.saveAndExit(); }};
    default:
        return {QStringLiteral("back, discarded"),
                [this, goBack] {
                    return goBack() && m_desk->answer<SvtaParamNotSaveDialog>("btnCancel");
                },
                [this] { m_model.exit(); }};
    }
}

SettingsModelTest::Step SettingsModelTest::informationStep()
{
    return {QStringLiteral("information"),
            [this] {
                if (!m_desk->click("deviceInfoBtn") || !m_desk->isOnPage(Pages::InfoPage))
                    return false;
                m_desk->unlockBack();
                return m_desk->click("backBtn");
            },
            [this] { m_model.returnToPage(); }};
}

SettingsModelTest::Step SettingsModelTest::previewStep()
{
    return {QStringLiteral("preview"),
            [this] {
                PendingTimers::fire(kDebounceMs);
                return m_desk->clickPreview();
            },
            [this] { m_model.togglePreview(); }};
}

QStringList SettingsModelTest::differences()
{
    QStringList wrong;
    const auto compare = [&wrong](const QString& what, const QString& is, const QString& expected) {
        if (is != expected)
            wrong << QStringLiteral("%1 is\n  %2\nand not\n  %3").arg(what, is, expected);
    };
    compare(QStringLiteral("page"), QString::number(m_desk->page()),
            QString::number(m_model.isOpen() ? Pages::SettingPage : Pages::HomePage));
    for (int i = 0; i < kSerials.size(); ++i) {
        const Model::Camera camera = m_model.cameras().value(kSerials[i]);
        if (camera.plugged)
            compare(
                QStringLiteral("camera %1").arg(i),
                described(ObservedSettings::registersOf(*m_cameras[static_cast<std::size_t>(i)])),
                described(camera.registers));
    }
    compare(QStringLiteral("file"), described(ObservedSettings::savedFile(*m_saved)),
            described(m_model.file()));
    if (!m_model.isOpen())
        return wrong;
    for (int i = 0; i < kSerials.size(); ++i) {
        QStringList requests =
            ObservedSettings::requestsOf(*m_cameras[static_cast<std::size_t>(i)]);
        const bool isOpen = kSerials[i] == m_model.openCamera();
        if (isOpen) // the writes show in the registers
            requests = requests.filter(QRegularExpression(QStringLiteral("^[^=]*$")));
        compare(QStringLiteral("requests to camera %1").arg(i), requests.join(QLatin1Char(' ')),
                isOpen ? m_model.reads().join(QLatin1Char(' ')) : QString());
    }
    compare(QStringLiteral("available"),
            QString::number(m_desk->find("stackedWidget")->isEnabled()),
            QString::number(m_model.isLoaded()));
    compare(QStringLiteral("preview"),
            QString::number(m_desk->find<TransPrewBtn>()->isPreviewOpen()),
            QString::number(m_model.page().preview));
    if (m_model.isLoaded())
        compare(QStringLiteral("shown"), described(ObservedSettings::shownPage(*m_desk)),
                described(m_model.page()));
    compare(QStringLiteral("edited"), QString::number(!m_desk->window().isSameData()),
            QString::number(m_model.isEdited()));
    if (m_desk->visibleDialogs() != 0)
        wrong << QStringLiteral("a dialog is up");
    return wrong;
}

QTEST_MAIN(SettingsModelTest)
#include "SettingsModelTest.moc"
