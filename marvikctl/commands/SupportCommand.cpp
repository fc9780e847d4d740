#include "SupportCommand.h"

#include "PlainText.h"
#include "Redaction.h"
#include "Selection.h"
#include "SettingNames.h"
#include "SystemFacts.h"
#include "TarArchive.h"
#include "WholeFile.h"

#include <algorithm>
#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QSysInfo>

namespace {

constexpr int kExchanges = 10;
constexpr int kLogLines = 200;
constexpr qint64 kLogBytes = qint64{64} * 1024;

QJsonObject versions()
{
    return {{QStringLiteral("marvikctl"), QCoreApplication::applicationVersion()},
            {QStringLiteral("qt"), QString::fromLatin1(qVersion())},
            {QStringLiteral("system"), QSysInfo::prettyProductName()},
            {QStringLiteral("kernel"),
             QSysInfo::kernelType() + QLatin1Char(' ') + QSysInfo::kernelVersion()},
            {QStringLiteral("architecture"), QSysInfo::currentCpuArchitecture()}};
}

/// The last lines of the log of the window's program.
QStringList logLines()
{
    QFile file(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
               QStringLiteral("/MarvikTools.log"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    file.seek(std::max<qint64>(0, file.size() - kLogBytes));
    const QStringList lines =
        QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.mid(std::max(0, lines.size() - kLogLines));
}

/// Milliseconds of exchanges, the shortest first.
QJsonArray timing(CameraLink& link)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> samples;
    for (int i = 0; i < kExchanges; ++i) {
        const Clock::time_point start = Clock::now();
        if (!link.firmwareVersion())
            break;
        samples.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(samples.begin(), samples.end());
    QJsonArray array;
    for (const double sample : samples)
        array.append(qRound(sample * 100) / 100.0);
    return array;
}

void look(CameraLink& link, CameraResult& result, Redaction& redaction, QStringList& advice)
{
    std::optional<Failure> failure = link.probe();
    const auto serial = link.serialNumber();
    if (!failure && !serial)
        failure = serial.failure();
    redaction.hideSerial(link.knownSerialNumber());
    QJsonArray nodes{SystemFacts::node(link.path())};
    if (const auto video = CameraInventory::videoOf(link.camera()))
        nodes.append(SystemFacts::node(video->displayName));
    result.details.insert(QStringLiteral("nodes"), nodes);
    if (const auto version = link.firmwareVersion())
        result.details.insert(QStringLiteral("firmware"), *version);
    QJsonObject settings;
    for (const SettingKey& key : SettingNames::keys()) {
        const auto registers = link.read(key.registers());
        const auto value = registers ? SettingNames::valueOf(key, *registers) : std::nullopt;
        settings.insert(key.name, value ? SettingNames::toJson(key, *value) : QJsonValue());
        if (!failure && !registers)
            failure = registers.failure();
    }
    result.details.insert(QStringLiteral("settings"), settings);
    result.details.insert(QStringLiteral("exchangeMilliseconds"), timing(link));
    if (!failure)
        return;
    result.fail(*failure);
    if (!failure->hint.isEmpty() && !advice.contains(failure->hint))
        advice << failure->hint;
}

} // namespace

void SupportCommand::run(const Invocation& invocation, Report& report)
{
    if (refusesArguments(invocation, report))
        return;
    Redaction redaction;
    redaction.hideUser(SystemFacts::userName());
    QStringList advice;
    QJsonArray cameras;
    if (CameraInventory::list().empty()) {
        advice << tr("No supported camera is plugged in, or its USB connection does not work: try "
                     "another cable and another socket.");
    } else {
        auto links = Selection::chooseOrAll(invocation);
        if (!links) {
            report.fail(links.failure());
            return;
        }
        for (CameraLink& link : *links) {
            CameraResult result = CameraResult::of(link);
            if (const auto failure = link.open())
                result.fail(*failure);
            else
                look(link, result, redaction, advice);
            result.serial = link.knownSerialNumber();
            link.close();
            cameras.append(result.toJson());
        }
    }
    QStringList log = logLines();
    QJsonObject facts{{QStringLiteral("versions"), versions()},
                      {QStringLiteral("user"), SystemFacts::user()},
                      {QStringLiteral("rules"), SystemFacts::rules()},
                      {QStringLiteral("cameras"), cameras},
                      {QStringLiteral("advice"), QJsonArray::fromStringList(advice)}};
    QString text = QString::fromUtf8(QJsonDocument(facts).toJson());
    QString logText = log.join(QLatin1Char('\n')) + QLatin1Char('\n');
    if (invocation.redact) {
        text = redaction.apply(text);
        logText = redaction.apply(logText);
        facts = QJsonDocument::fromJson(text.toUtf8()).object();
    }
    report.set(QStringLiteral("report"), facts);
    const QString plain = PlainText::of(facts);
    if (invocation.output.isEmpty()) {
        report.setText(plain);
        return;
    }
    TarArchive archive(QStringLiteral("marvikctl-report"));
    archive.add(QStringLiteral("report.json"), text.toUtf8());
    archive.add(QStringLiteral("report.txt"), plain.toUtf8());
    archive.add(QStringLiteral("MarvikTools.log"), logText.toUtf8());
    const auto bytes = archive.compressed();
    if (!bytes)
        report.fail(bytes.failure());
    else if (const auto failure = WholeFile::write(invocation.output, *bytes))
        report.fail(*failure);
}
