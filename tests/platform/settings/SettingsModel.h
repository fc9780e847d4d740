#pragma once

#include <array>
#include <optional>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

/// The expected state after every action of a user: the registers of each camera, the saved file,
/// the stored and the edited settings of the open camera, and the shown values. Implements the
/// rules without using any code of the program.
class SettingsModel
{
public:
    enum Slider { Bright, Contrast, Saturation, Sharpness };
    /// Whatever can be unknown besides the sliders.
    enum Setting {
        AutoFraming = Sharpness + 1,
        FrameMaster,
        SubMode,
        Sensitivity,
        View,
        Mirror,
        Intelligent
    };
    enum class Framing { Automatic, FrameMaster };
    using Picture = std::array<int, 4>;

    /// The registers of one camera.
    struct Registers
    {
        int autoFraming = 0;
        int frameMaster = 0;
        int subMode = 0;
        int sensitivity = 50;
        int view = 120;
        int mirror = 0;
        Picture picture{128, 128, 128, 128};
    };

    /// What a camera does not do.
    struct Faults
    {
        QSet<int> refused; ///< read commands
        QSet<int> lost;    ///< read commands without an answer
        bool hasAmplifier = true;
        bool isVideoTaken = false;   ///< by another program
        bool isVideoRefused = false; ///< its video node cannot be opened
    };

    struct Saved
    {
        Picture picture{};
        int imageMode = 0;
    };

    /// One of the two copies of the open camera's settings.
    struct Values
    {
        Registers camera;
        int intelligent = 0;
        int imageMode = 0;
    };

    struct Page
    {
        bool intelligent = false;
        Framing framing = Framing::Automatic;
        bool individual = false;
        int view = 120;       ///< 0 for none
        int sensitivity = 50; ///< 0 for none
        bool mirror = false;
        int imageMode = 0;
        Picture sliders{128, 128, 128, 128};
        bool lastWasAutomatic = true;
        bool preview = false;
        QSet<int> unknown; ///< controls that are marked
    };

    struct Camera
    {
        Registers registers;
        Faults faults;
        bool plugged = true;
    };

    void add(const QString& serial) { m_cameras.insert(serial, {}); }

    /// @name Actions and events
    /// @{
    void open(const QString& serial);
    /// Returns from the information page of the open camera.
    void returnToPage();
    void togglePreview();
    void switchIntelligent();
    void chooseFraming(Framing framing);
    void chooseSubMode(bool individual);
    void chooseView(int degrees);
    void chooseSensitivity(int level);
    void switchMirror();
    void choosePreset(int mode);
    /// The slider is clicked or dragged to @p value, or set by keys.
    void moveSlider(Slider slider, int value);
    /// A key moves the slider; nothing happens at the end of the scale.
    void stepSlider(Slider slider, int value);
    void save();
    void reset();
    /// Leaves the page when nothing is edited.
    void back();
    void exit();
    void saveAndExit();
    void unplug(const QString& serial);
    void plug(const QString& serial);
    /// Another program changes the camera.
    void change(const QString& serial, const Registers& registers);
    void trouble(const QString& serial, const Faults& faults);
    void removeFile() { m_file.clear(); }
    /// @}

    [[nodiscard]] bool isOpen() const { return !m_open.isEmpty(); }
    [[nodiscard]] const QString& openCamera() const { return m_open; }
    /// Whether the page has values.
    [[nodiscard]] bool isLoaded() const { return m_loaded; }
    [[nodiscard]] bool isEdited() const;
    [[nodiscard]] bool canBeSaved() const;
    [[nodiscard]] bool isUnknown(int value) const { return m_unknown.contains(value); }
    [[nodiscard]] Page page() const;
    [[nodiscard]] const QMap<QString, Camera>& cameras() const { return m_cameras; }
    [[nodiscard]] const QMap<QString, Saved>& file() const { return m_file; }
    /// The read commands that the open camera has got since forgetReads().
    [[nodiscard]] const QStringList& reads() const { return m_reads; }
    void forgetReads() { m_reads.clear(); }

private:
    [[nodiscard]] Registers& registers() { return m_cameras[m_open].registers; }
    [[nodiscard]] const Faults& faults() { return m_cameras[m_open].faults; }
    /// The answer to a read command, which is not sent any more after two without an answer.
    std::optional<int> read(int command, int value);
    void readIdentity();
    void readStream();
    std::optional<int> refreshSubMode();
    void load();
    void loadSetting(Setting setting, int command, int value, int& stored);

    /// Whether a value is only shown: the camera has not reported it, and the user has not set it.
    [[nodiscard]] bool isOnlyShown(int value) const { return m_isShowing && isUnknown(value); }
    void setUnknown(int value);
    void setView(int degrees);
    void setSlider(Slider slider, int value);
    void setSensitivity(int level);
    void setMirror(bool on);
    void setSubMode(bool individual);
    void markFraming(Framing framing);
    /// The effect of a selected framing when its delay is over.
    void takeFraming();
    void doIntelligent(bool on, bool automatic);
    void applySaved();
    void startPlay();
    /// Shows the edited values on the page, which writes those that are known to the camera again.
    void showEdited();

    QMap<QString, Camera> m_cameras;
    QMap<QString, Saved> m_file;
    QString m_open;
    Values m_stored;
    Values m_edited;
    QSet<int> m_unknown; ///< edited values that are not known
    QSet<int> m_unread;  ///< stored values that are not known
    Page m_page;
    QStringList m_reads;
    int m_silentReads = 0;
    bool m_serialRead = false;
    bool m_loaded = false;
    bool m_isVideoOpen = false;
    bool m_isShowing = false;
    bool m_framingPending = false;
};
