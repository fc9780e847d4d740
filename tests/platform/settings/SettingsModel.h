#pragma once

#include <array>
#include <QMap>
#include <QString>

/// The expected state after every action of a user: the registers of each camera, the saved file,
/// the stored and the edited settings of the open camera, and the shown values. Implements the
/// rules without using any code of the program.
class SettingsModel
{
public:
    enum Slider { Bright, Contrast, Saturation, Sharpness };
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
        int view = 120;
        int sensitivity = 50; ///< 0 for none
        bool mirror = false;
        int imageMode = 0;
        Picture sliders{128, 128, 128, 128};
        bool lastWasAutomatic = true;
    };

    struct Camera
    {
        Registers registers;
        bool plugged = true;
    };

    void add(const QString& serial) { m_cameras.insert(serial, {}); }

    /// @name Actions and events
    /// @{
    void open(const QString& serial);
    /// Returns from the information page of the open camera.
    void returnToPage();
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
    /// @}

    [[nodiscard]] bool isOpen() const { return !m_open.isEmpty(); }
    [[nodiscard]] const QString& openCamera() const { return m_open; }
    [[nodiscard]] bool isEdited() const;
    [[nodiscard]] const Page& page() const { return m_page; }
    [[nodiscard]] const QMap<QString, Camera>& cameras() const { return m_cameras; }
    [[nodiscard]] const QMap<QString, Saved>& file() const { return m_file; }

private:
    [[nodiscard]] Registers& registers() { return m_cameras[m_open].registers; }
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
    /// Shows the edited values on the page, which writes them to the camera again.
    void showEdited();

    QMap<QString, Camera> m_cameras;
    QMap<QString, Saved> m_file;
    QString m_open;
    Values m_stored;
    Values m_edited;
    Page m_page;
    bool m_framingPending = false;
};
