#include "CacheHome.h"
#include "ShownHome.h"
#include "SvtaParamSaveDialog.h"

#include <memory>
#include <QFile>
#include <QPushButton>
#include <QStandardPaths>
#include <QtTest>

namespace {

const QString kSaved = QStringLiteral("Successfully saved");
const QString kFailed = QStringLiteral("Save failed ， please try it again");

// The video interface's numbers of brightness, contrast, sharpness and saturation.
const QStringList kShownOrder{"0", "1", "4", "3"};
const QStringList kStoredOrder{"0", "1", "3", "4"};

} // namespace

/// What the camera is asked for and told when its settings are opened, and when they can be saved.
class CameraSettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pictureValuesAreReadInTheOrderOfTheFile();
    void rangesAreReadAndValuesShownWithSharpnessBeforeSaturation();
    void cameraWithKnownValuesIsSaved();
    void cameraWhoseValuesAreNotKnownCannotBeSaved();

private:
    [[nodiscard]] CaptureScript& video() const { return m_home->cameras().video().preview(); }
    /// The properties that one operation of the video interface was called for, in their order.
    [[nodiscard]] QStringList propertiesOf(const QString& operation) const;
    /// Answers the question before a save, and returns the toast.
    [[nodiscard]] QString save() const;

    std::unique_ptr<CacheHome> m_cache;
    std::unique_ptr<ShownHome> m_home;
    QString m_file;
};

void CameraSettingsTest::init()
{
    m_cache = std::make_unique<CacheHome>();
    m_file = QStandardPaths::standardLocations(QStandardPaths::CacheLocation).first() +
             QStringLiteral("/device.ini");
    m_home = std::make_unique<ShownHome>(1);
    QVERIFY(m_home->isPlaced());
    m_home->cameras().answerAll();
}

void CameraSettingsTest::cleanup()
{
    m_home.reset();
    m_cache.reset();
}

QStringList CameraSettingsTest::propertiesOf(const QString& operation) const
{
    const QString start = operation + QLatin1Char('(');
    QStringList properties;
    for (const QString& step : video().steps) {
        if (step.startsWith(start))
            properties << step.mid(start.size()).chopped(1);
    }
    return properties;
}

QString CameraSettingsTest::save() const
{
    m_home->window().slotShowParamSaveDialog();
    auto* question = m_home->find<SvtaParamSaveDialog>();
    if (!QTest::qWaitForWindowExposed(question))
        return QStringLiteral("no question");
    QTest::mouseClick(question->findChild<QPushButton*>(QStringLiteral("btnConfirm")),
                      Qt::LeftButton);
    return m_home->toast();
}

void CameraSettingsTest::pictureValuesAreReadInTheOrderOfTheFile()
{
    QVERIFY(m_home->openSettings());
    QCOMPARE(propertiesOf(QStringLiteral("get")), kStoredOrder);
}

void CameraSettingsTest::rangesAreReadAndValuesShownWithSharpnessBeforeSaturation()
{
    QVERIFY(m_home->openSettings());
    QCOMPARE(propertiesOf(QStringLiteral("getRange")), kShownOrder);
    QCOMPARE(propertiesOf(QStringLiteral("set")), kShownOrder);
    // Every range comes before the first write, which passes the flags back that came with it.
    QVERIFY(video().steps.lastIndexOf(QStringLiteral("getRange(3)")) <
            video().steps.indexOf(QStringLiteral("set(0)")));
}

void CameraSettingsTest::cameraWithKnownValuesIsSaved()
{
    QVERIFY(m_home->openSettings());
    QCOMPARE(save(), kSaved);
    QVERIFY(QFile::exists(m_file));
}

/// The link to the camera is good and its serial number is known, but without its video device the
/// page has no values: a save would replace the camera's saved picture with zeros.
void CameraSettingsTest::cameraWhoseValuesAreNotKnownCannotBeSaved()
{
    video().failing.insert(QStringLiteral("bindCaptureSource"));
    QVERIFY(m_home->openSettings());
    // The button is disabled, and so is its key.
    QTest::keyClick(&m_home->window(), Qt::Key_S, Qt::ControlModifier);
    QVERIFY(!m_home->find<SvtaParamSaveDialog>()->isVisible());
    QCOMPARE(save(), kFailed);
    QVERIFY(!QFile::exists(m_file));
}

QTEST_MAIN(CameraSettingsTest)
#include "CameraSettingsTest.moc"
