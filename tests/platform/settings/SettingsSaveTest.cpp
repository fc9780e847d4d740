#include "CameraDesk.h"
#include "FileSizeLimit.h"
#include "MaskForm.h"
#include "SvtaParamNotSaveDialog.h"
#include "SvtaParamSaveDialog.h"

#include <memory>
#include <QDir>
#include <QtTest>
#include <random>

using Pages = SvtaPagesView;

namespace {

const QString kSerial = QStringLiteral("SVAA009500551");
const QString kSaved = QStringLiteral("Successfully saved");
const QString kFailed = QStringLiteral("Save failed ， please try it again");

using Option = PluggedCamera::Option;

std::unique_ptr<PluggedCamera> cameraNamed(const QByteArray& serial)
{
    return std::make_unique<PluggedCamera>(
        std::initializer_list<Option>{Option{"serial", serial.toStdString()}});
}

QByteArray garbage(int size, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> byte(1, 255);
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(static_cast<char>(byte(random)));
    return bytes;
}

} // namespace

/// Saving: the content of the file, and the values when the camera is opened again.
class SettingsSaveTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void questionHasItsTexts();
    void cancelSavesNothing();
    void saveKeepsThePictureUnderTheSerialNumber();
    void saveWritesNothingToTheCamera();
    void saveEndsTheEdits();
    void saveByShortcut();
    void secondSaveReplacesTheFirst();
    void otherGroupsAndKeysStay();
    void camerasNeverShareValues();
    void serialNumberMakesOneGroup_data();
    void serialNumberMakesOneGroup();
    void strangeSerialNumbersKeepTheirValuesApart();
    void cameraWithoutSerialNumberCannotBeSaved();
    void cameraThatDoesNotReportItsSerialNumberCannotBeSaved();
    void linkThatDoesNotOpenFailsTheSave();
    void directoryThatCannotBeWrittenFailsTheSave_data();
    void directoryThatCannotBeWrittenFailsTheSave();
    void fileThatIsADirectoryFailsTheSave();
    void fullDiskFailsTheSaveAndKeepsTheFile();
    void damagedFileIsReplacedAndKeptAsACopy();
    void failedSaveKeepsTheEdits();
    void saveFailsWhenTheListIsShown();

private:
    [[nodiscard]] bool openCamera(const QByteArray& serial)
    {
        m_camera = cameraNamed(serial);
        m_desk = std::make_unique<CameraDesk>();
        return m_desk->startWith(*m_camera);
    }

    std::unique_ptr<SavedSettings> m_saved;
    std::unique_ptr<PluggedCamera> m_camera;
    std::unique_ptr<CameraDesk> m_desk;
};

void SettingsSaveTest::init()
{
    m_saved = std::make_unique<SavedSettings>();
}

void SettingsSaveTest::cleanup()
{
    m_desk.reset();
    m_camera.reset();
    m_saved.reset();
}

void SettingsSaveTest::questionHasItsTexts()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnPramaSava"));
    auto* dialog = m_desk->find<SvtaParamSaveDialog>();
    QVERIFY(QTest::qWaitForWindowExposed(dialog));
    QVERIFY(m_desk->find<MaskForm>()->isVisible());
    QCOMPARE(dialog->findChild<QLabel*>("labMessage")->text(),
             QStringLiteral("Save the settings？"));
    QCOMPARE(dialog->findChild<QPushButton*>("btnCancel")->text(), QStringLiteral("Cancel"));
    QCOMPARE(dialog->findChild<QPushButton*>("btnConfirm")->text(), QStringLiteral("Confirm"));
    QVERIFY(m_desk->answer<SvtaParamSaveDialog>("btnCancel"));
}

void SettingsSaveTest::cancelSavesNothing()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->click("btnPramaSava"));
    QVERIFY(m_desk->answer<SvtaParamSaveDialog>("btnCancel"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(m_desk->toast(), QString());
    QCOMPARE(m_saved->files(), QStringList());
}

void SettingsSaveTest::saveKeepsThePictureUnderTheSerialNumber()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->setSlider("brightSlider", 101));
    QVERIFY(m_desk->setSlider("contrastSlider", 102));
    QVERIFY(m_desk->setSlider("saturationSlider", 103));
    QVERIFY(m_desk->setSlider("sharpnessSlider", 104));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kSaved);
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(m_saved->groups(), QStringList{kSerial});
    const QMap<QString, int> expected{{"bright", 101},
                                      {"contrast", 102},
                                      {"saturation", 103},
                                      {"sharpness", 104},
                                      {"imagemode", 3}};
    QCOMPARE(m_saved->group(kSerial), expected);
    QCOMPARE(m_saved->files(), QStringList{"device.ini"});
}

void SettingsSaveTest::saveWritesNothingToTheCamera()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnHeigh"));
    m_camera->forgetRequests();
    QVERIFY(m_desk->save());
    QCOMPARE(requestsTo(*m_camera), QStringList());
}

void SettingsSaveTest::saveEndsTheEdits()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnHeigh"));
    QVERIFY(m_desk->click("btn60"));
    QVERIFY(m_desk->save());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isOnPage(Pages::HomePage));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(m_camera->value("PickupSensitivity"), 80);
    QCOMPARE(m_camera->value("CameraView"), 60);
}

void SettingsSaveTest::saveByShortcut()
{
    QVERIFY(openCamera("SVAA009500551"));
    QTest::keyClick(&m_desk->window(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(m_desk->answer<SvtaParamSaveDialog>("btnConfirm"));
    QCOMPARE(m_saved->groups(), QStringList{kSerial});
}

void SettingsSaveTest::secondSaveReplacesTheFirst()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QVERIFY(m_desk->click("btnVividMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_saved->group(kSerial).value("saturation"), 140);
    QCOMPARE(m_saved->group(kSerial).value("imagemode"), 2);
    QVERIFY(m_desk->back());
    m_camera->setValue("saturation", 99);
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_desk->sliderValue("saturationSlider"), 140);
    QCOMPARE(m_camera->value("saturation"), 140);
}

void SettingsSaveTest::otherGroupsAndKeysStay()
{
    QVERIFY(m_saved->put("[OTHER]\nbright=80\nnote=kept\n\n[SVAA009500551]\nbright=90\n"
                         "image_mode=2\n"));
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnStandardMode"));
    QVERIFY(m_desk->save());
    QVERIFY(m_saved->contents().contains("note=kept"));
    QCOMPARE(m_saved->group(QStringLiteral("OTHER")).value("bright"), 80);
    QCOMPARE(m_saved->group(kSerial).value("image_mode"), 2);
    QCOMPARE(m_saved->group(kSerial).value("bright"), 128);
}

void SettingsSaveTest::camerasNeverShareValues()
{
    const auto other = cameraNamed("SVAA009500552");
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QVERIFY(m_desk->back());

    QVERIFY(m_desk->open(*other));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{128, 128, 128, 128}));
    QVERIFY(m_desk->isChecked("btnStandardMode"));
    QCOMPARE(pictureOf(*other), (QList<int>{128, 128, 128, 128}));
    QVERIFY(m_desk->setSlider("brightSlider", 80));
    QVERIFY(m_desk->save());
    QCOMPARE(pictureOf(*m_camera), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->back());

    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{138, 128, 130, 120}));
    QVERIFY(m_desk->isChecked("btnBrightMode"));
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->open(*other));
    QCOMPARE(m_desk->sliderValue("brightSlider"), 80);
    QVERIFY(m_desk->isChecked("btnCustomMode"));
    QCOMPARE(m_saved->groups().size(), 2);
}

void SettingsSaveTest::serialNumberMakesOneGroup_data()
{
    QTest::addColumn<QByteArray>("serial");
    const auto row = [](const char* name, const QByteArray& serial) {
        QTest::newRow(name) << serial;
    };
    row("slashes", "a/b/c");
    row("backslashes", "a\\b\\c");
    row("parent folders", "../../../../tmp/evil");
    row("brackets", "a]b[c");
    row("equals and semicolon", "a=b;c");
    row("line end", "a\n[SVAA009500552]\nbright=1");
    row("percent", "100%41");
    row("reserved name", "General");
    row("reserved name, encoded", "%General");
    row("blank", " ");
    row("blanks around", "  SVAA  ");
    row("comment", ";SVAA");
    row("quotes", "\"SVAA\"");
    row("at sign", "@Invalid()");
    row("letters of other scripts", "会议摄像机 №7 é");
    row("not UTF-8", "\xFF\xFE\x80\xC3");
    row("control characters", "\x01\x02\x1B[31m\x7F");
    row("longest", garbage(1010, 1));
    row("longest of slashes", QByteArray(1010, '/'));
    row("longest of letters", QByteArray(1010, 'x'));
}

void SettingsSaveTest::serialNumberMakesOneGroup()
{
    QFETCH(const QByteArray, serial);
    QVERIFY(m_saved->put("[SVAA009500552]\nbright=80\ncontrast=80\nsaturation=80\nsharpness=80\n"
                         "imagemode=1\n"));
    const QMap<QString, int> before = m_saved->group(QStringLiteral("SVAA009500552"));
    QVERIFY(openCamera(serial));
    QVERIFY(m_desk->setSlider("brightSlider", 111));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kSaved);
    QCOMPARE(m_saved->groups().size(), 2);
    QCOMPARE(m_saved->group(QStringLiteral("SVAA009500552")), before);
    QCOMPARE(m_saved->files(), QStringList{"device.ini"});

    QVERIFY(m_desk->back());
    m_camera->setValue("brightness", 99);
    QVERIFY(m_desk->open(*m_camera));
    QCOMPARE(m_desk->sliderValue("brightSlider"), 111);
    QCOMPARE(m_camera->value("brightness"), 111);
}

void SettingsSaveTest::strangeSerialNumbersKeepTheirValuesApart()
{
    const QByteArrayList serials{"a/b", "a\\b", "a%2fb", "a%2Fb", "A/B", "general", "General"};
    std::vector<std::unique_ptr<PluggedCamera>> cameras;
    for (const QByteArray& serial : serials)
        cameras.push_back(cameraNamed(serial));
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
    int value = 90;
    for (const auto& camera : cameras) {
        QVERIFY(m_desk->open(*camera));
        QVERIFY(m_desk->setSlider("contrastSlider", ++value));
        QVERIFY(m_desk->save());
        QVERIFY(m_desk->back());
        QVERIFY(m_desk->isOnPage(Pages::HomePage));
    }
    QCOMPARE(m_saved->groups().size(), serials.size());
    value = 90;
    for (const auto& camera : cameras) {
        camera->setValue("contrast", 128);
        QVERIFY(m_desk->open(*camera));
        QCOMPARE(m_desk->sliderValue("contrastSlider"), ++value);
        QVERIFY(m_desk->back());
    }
}

void SettingsSaveTest::cameraWithoutSerialNumberCannotBeSaved()
{
    QVERIFY(openCamera(""));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kFailed);
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(m_saved->files(), QStringList());
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isUp<SvtaParamNotSaveDialog>());
}

void SettingsSaveTest::cameraThatDoesNotReportItsSerialNumberCannotBeSaved()
{
    m_camera = cameraNamed("SVAA009500551");
    m_desk = std::make_unique<CameraDesk>();
    QVERIFY(m_desk->start());
    m_camera->fault("status 1 cmd=0x5010");
    QVERIFY(m_desk->open(*m_camera));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kFailed);
    QCOMPARE(m_saved->files(), QStringList());
}

void SettingsSaveTest::linkThatDoesNotOpenFailsTheSave()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    m_camera->fault("open-error");
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kFailed);
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QCOMPARE(m_saved->files(), QStringList());
    m_camera->clearFaults();
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kSaved);
    QCOMPARE(m_saved->group(kSerial).value("bright"), 138);
}

void SettingsSaveTest::directoryThatCannotBeWrittenFailsTheSave_data()
{
    QTest::addColumn<QString>("place");
    // Even root cannot create anything there.
    QTest::newRow("read-only") << QStringLiteral("/proc/marviktools");
    QTest::newRow("below a file") << QStringLiteral("/etc/hostname/cache");
}

void SettingsSaveTest::directoryThatCannotBeWrittenFailsTheSave()
{
    QFETCH(const QString, place);
    const SavedSettings nowhere(place);
    QVERIFY(openCamera("SVAA009500551"));
    QCOMPARE(m_desk->sliderValues(), (QList<int>{128, 128, 128, 128}));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kFailed);
    QCOMPARE(m_camera->value("brightness"), 138);
    QVERIFY(m_desk->back());
    QVERIFY(m_desk->isUp<SvtaParamNotSaveDialog>());
}

void SettingsSaveTest::fileThatIsADirectoryFailsTheSave()
{
    QVERIFY(QDir().mkpath(m_saved->path() + QStringLiteral("/inside")));
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kFailed);
    QVERIFY(QDir(m_saved->path() + QStringLiteral("/inside")).exists());
}

void SettingsSaveTest::fullDiskFailsTheSaveAndKeepsTheFile()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    const QByteArray before = m_saved->contents();
    QVERIFY(m_desk->click("btnVividMode"));
    {
        const FileSizeLimit fullDisk(0);
        QVERIFY(m_desk->save());
    }
    QCOMPARE(m_desk->toast(), kFailed);
    QCOMPARE(m_saved->contents(), before);
    QCOMPARE(m_saved->files(), QStringList{"device.ini"});
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kSaved);
    QCOMPARE(m_saved->group(kSerial).value("saturation"), 140);
}

void SettingsSaveTest::damagedFileIsReplacedAndKeptAsACopy()
{
    const QByteArray damaged("[OTHER]\nbright=80\n[broken\nno value\n");
    QVERIFY(m_saved->put(damaged));
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    QVERIFY(m_desk->save());
    QCOMPARE(m_desk->toast(), kSaved);
    QCOMPARE(m_saved->group(kSerial).value("bright"), 138);
    QCOMPARE(m_saved->group(QStringLiteral("OTHER")).value("bright"), 80);
    QFile aside(m_saved->path() + QStringLiteral(".damaged"));
    QVERIFY(aside.open(QIODevice::ReadOnly));
    QCOMPARE(aside.readAll(), damaged);
}

void SettingsSaveTest::failedSaveKeepsTheEdits()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnHeigh"));
    {
        const FileSizeLimit fullDisk(0);
        QVERIFY(m_desk->save());
    }
    QCOMPARE(m_desk->toast(), kFailed);
    QVERIFY(m_desk->isChecked("btnHeigh"));
    QVERIFY(m_desk->discard());
    QCOMPARE(m_camera->value("PickupSensitivity"), 50);
    QVERIFY(!m_saved->exists());
}

void SettingsSaveTest::saveFailsWhenTheListIsShown()
{
    QVERIFY(openCamera("SVAA009500551"));
    QVERIFY(m_desk->click("btnBrightMode"));
    // The page changes while the question is shown, as it does when a camera is unplugged.
    QVERIFY(m_desk->click("btnPramaSava"));
    m_desk->window().showView(Pages::HomePage);
    QVERIFY(m_desk->answer<SvtaParamSaveDialog>("btnConfirm"));
    QCOMPARE(m_desk->toast(), QStringLiteral("保存失败"));
    QCOMPARE(m_desk->visibleDialogs(), 0);
    QVERIFY(!m_saved->exists());
}

QTEST_MAIN(SettingsSaveTest)
#include "SettingsSaveTest.moc"
