#include "PluggedCamera.h"
#include "UVCCamera.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>
#include <QWidget>

/// A system without GStreamer's camera source. The framework looks for its parts once in a process.
class PreviewPartTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void missingPartIsNamedWithItsPackage();

private:
    QTemporaryDir m_parts;
};

void PreviewPartTest::initTestCase()
{
    QVERIFY(m_parts.isValid());
    const QDir installed(QStringLiteral(MARVIK_GSTREAMER_PARTS));
    const QStringList parts = installed.entryList({QStringLiteral("*.so")}, QDir::Files);
    const QString source = QStringLiteral("libgstvideo4linux2.so");
    QVERIFY(parts.contains(source));
    for (const QString& part : parts) {
        if (part != source)
            QVERIFY(QFile::link(installed.filePath(part), m_parts.filePath(part)));
    }
    qputenv("GST_PLUGIN_SYSTEM_PATH_1_0", m_parts.path().toLocal8Bit());
    qputenv("GST_REGISTRY_1_0", m_parts.filePath(QStringLiteral("registry")).toLocal8Bit());
}

void PreviewPartTest::missingPartIsNamedWithItsPackage()
{
    PluggedCamera camera;
    QWidget window;
    window.show();
    UVCCamera program;
    QVERIFY(!program.openDevice(camera.videoPath(), window.winId()));
    QCOMPARE(program.lastFailure().cause, PreviewFailure::Cause::PartMissing);
    QCOMPARE(program.lastFailure().detail, QStringLiteral("v4l2src (gstreamer1.0-plugins-good)"));
    QVERIFY(!program.startCapture());
}

QTEST_MAIN(PreviewPartTest)
#include "PreviewPartTest.moc"
