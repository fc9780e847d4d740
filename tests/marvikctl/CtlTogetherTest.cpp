#include "CameraDesk.h"
#include "CtlProcess.h"

#include <QtTest>

namespace {

/// Sets one setting to its values in turn and asks for each of them; one command after the other,
/// each a process of its own.
class Commander
{
public:
    Commander(const CtlProcess& ctl, QString key, QStringList values, int commands)
        : m_ctl(ctl)
        , m_key(std::move(key))
        , m_values(std::move(values))
        , m_left(commands)
    {
        QObject::connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
                         &m_process, [this] { judge(); });
        start();
    }

    [[nodiscard]] bool isDone() const { return m_left == 0; }
    /// What went wrong first; empty when nothing has.
    [[nodiscard]] QString mistake() const { return m_mistake; }

private:
    [[nodiscard]] QString value() const { return m_values.at((m_left / 2) % m_values.size()); }
    [[nodiscard]] bool isQuestion() const { return m_left % 2 != 0; }
    void start()
    {
        const QStringList line =
            isQuestion() ? QStringList{QStringLiteral("get"), m_key}
                         : QStringList{QStringLiteral("set"), m_key + QLatin1Char('=') + value()};
        m_asked = isQuestion() ? m_set : value();
        m_ctl.start(m_process, line);
    }
    void judge()
    {
        const QString output = QString::fromUtf8(m_process.readAll());
        const int code = m_process.exitCode();
        const bool isGood =
            isQuestion() ? code == 0 && output.contains(m_asked) : code == 0 || code == 2;
        if (!isGood) {
            m_mistake = QStringLiteral("%1 %2, %3 left: exit %4, %5")
                            .arg(m_key, m_asked)
                            .arg(m_left)
                            .arg(code)
                            .arg(output + QString::fromUtf8(m_process.readAllStandardError()));
            m_left = 0;
            return;
        }
        m_set = m_asked;
        if (--m_left > 0)
            start();
    }

    const CtlProcess& m_ctl;
    QString m_key;
    QStringList m_values;
    int m_left;
    QString m_asked;
    QString m_set;
    QString m_mistake;
    QProcess m_process;
};

} // namespace

/// The window and two command lines use one camera at once.
class CtlTogetherTest : public QObject
{
    Q_OBJECT

private slots:
    void everyAnswerIsRight();
};

void CtlTogetherTest::everyAnswerIsRight()
{
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("MARVIK_TOGETHER_COMMANDS", &isNumber);
    const int commands = isNumber ? wanted : 10000;
    const SavedSettings saved;
    PluggedCamera camera{{"serial", "SVAA009500571"}};
    camera.setValue("autoFrameSwicth", 0);
    CameraDesk desk;
    QVERIFY(desk.startWith(camera));

    const CtlProcess ctl;
    const Commander sensitivity(
        ctl, QStringLiteral("sensitivity"),
        {QStringLiteral("low"), QStringLiteral("medium"), QStringLiteral("high")}, commands / 2);
    const Commander view(ctl, QStringLiteral("fov"), {QStringLiteral("90"), QStringLiteral("120")},
                         commands / 2);
    int clicks = 0;
    while (!sensitivity.isDone() || !view.isDone()) {
        const bool before = desk.isChecked("btnHorizontalMirror");
        QVERIFY(desk.click("btnHorizontalMirror"));
        QCOMPARE(desk.isChecked("btnHorizontalMirror"), !before);
        QCOMPARE(camera.value("HorizontalMirror"), before ? 0 : 1);
        ++clicks;
        QCoreApplication::processEvents(); // the ends of the commands
    }
    QCOMPARE(sensitivity.mistake(), QString());
    QCOMPARE(view.mistake(), QString());
    QCOMPARE(camera.stats().violations, std::uint64_t{0});
    qInfo("%d commands, %d clicks", commands, clicks);
}

QTEST_MAIN(CtlTogetherTest)

#include "CtlTogetherTest.moc"
