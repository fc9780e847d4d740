#include "CtlProcess.h"
#include "PluggedCamera.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QtTest>

namespace {

/// The document of a run without what differs between runs.
QString comparable(const CtlProcess& ctl, const CtlProcess::Run& run)
{
    QString text = run.output;
    return text.replace(ctl.path(QString()), QStringLiteral("@HOME@"));
}

} // namespace

/// Documents that programs of users depend on: every member and its order. The files are written
/// anew when MARVIK_WRITE_GOLDEN is set; the change of a document then shows in them.
class CtlJsonTest : public QObject
{
    Q_OBJECT

private slots:
    void documentIsAsBefore_data()
    {
        QTest::addColumn<QString>("line");
        QTest::addColumn<QString>("fault");
        const auto add = [](const char* name, const char* line, const char* fault = "") {
            QTest::newRow(name) << QString::fromLatin1(line) << QString::fromLatin1(fault);
        };
        add("list", "list");
        add("list-silent", "list", "noreply");
        add("info", "info");
        add("get", "get");
        add("get-refused", "get fov mirror", "status 1 cmd=0x50a0");
        add("set", "set fov=90 mirror=on brightness=60%");
        add("set-framing", "set framing=individual");
        add("set-preset", "set preset=vivid");
        add("set-dry-run", "set fov=90 --dry-run");
        add("set-nothing", "set fov=120");
        add("set-put-back", "set fov=90 mirror=on", "status 1 cmd=0x50a1");
        add("set-unknown", "set fvo=90");
        add("reset", "reset");
        add("save", "save");
        add("profile-save", "profile save hall");
        add("profile-show", "profile show room");
        add("profile-diff", "profile diff room");
        add("profile-apply", "profile apply room");
        add("profile-export", "profile export room");
        add("profile-list", "profile list");
        add("profile-assign", "profile assign room -d SVAA1");
        add("profile-unassign-nothing", "profile unassign --all");
        add("profile-wrong", "profile apply wrong");
        add("apply-nothing", "apply -d SVAA1 --once");
        add("apply", "apply -d SVBB2");
        add("firmware-check-no-service", "firmware check");
        add("firmware-install-dry-run", "firmware install @HOME@image.bin --dry-run");
        add("firmware-install-no-file", "firmware install /nowhere.bin");
        add("identify", "identify");
        add("help-set", "help set");
        add("unreadable", "--nonsense");
    }
    void documentIsAsBefore()
    {
        QFETCH(QString, line);
        QFETCH(QString, fault);
        const CtlProcess ctl;
        QVERIFY(QDir().mkpath(ctl.configPath() + QStringLiteral("/profiles")));
        write(ctl, "profiles/room.json",
              R"({"schema": 1, "settings": {"fov": 90, "mirror": "on"}})");
        write(ctl, "profiles/wrong.json", R"({"schema": 1, "settings": {"fvo": 90}})");
        write(ctl, "assignments.json", R"({"schema": 1, "serials": {"SVBB2": "room"}})");
        // The name of a node is free again when its camera has left and nobody has it open.
        PluggedCamera camera{{"serial", line.contains("SVBB2") ? "SVBB2" : "SVAA1"},
                             {"firmware", "1.0.5"}};
        if (!fault.isEmpty())
            camera.fault(fault.toStdString());
        write(ctl, "../../image.bin", "an image");
        line.replace(QStringLiteral("@HOME@"), ctl.path(QString()));
        const auto run = ctl.run(line + QStringLiteral(" --json"));
        QCOMPARE(run.json().value("exitCode").toInt(-1), run.exitCode);
        QVERIFY(camera.isReleased());
        const QString text = comparable(ctl, run);
        const QString name = QString::fromLatin1(QTest::currentDataTag()) + QStringLiteral(".json");
        m_made.insert(name);
        QFile golden(QStringLiteral(MARVIK_GOLDEN "/") + name);
        if (qEnvironmentVariableIsSet("MARVIK_WRITE_GOLDEN")) {
            QVERIFY(golden.open(QIODevice::WriteOnly));
            golden.write(text.toUtf8());
            return;
        }
        QVERIFY(golden.open(QIODevice::ReadOnly));
        QCOMPARE(text, QString::fromUtf8(golden.readAll()));
    }

    /// A document that is no longer made would be validated for ever.
    void everyGoldenDocumentIsMade()
    {
        const QStringList files = QDir(QStringLiteral(MARVIK_GOLDEN)).entryList(QDir::Files);
        QCOMPARE(QSet<QString>(files.begin(), files.end()), m_made);
    }

private:
    static void write(const CtlProcess& ctl, const char* name, const QByteArray& text)
    {
        QFile file(ctl.configPath() + QLatin1Char('/') + QString::fromLatin1(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), qint64(text.size()));
    }

    QSet<QString> m_made;
};

QTEST_GUILESS_MAIN(CtlJsonTest)
#include "CtlJsonTest.moc"
