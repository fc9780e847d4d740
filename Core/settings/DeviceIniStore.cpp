#include "DeviceIniStore.h"

#include "FileLock.h"
#include "LogCategories.h"
#include "ParameterKeys.h"
#include "PictureSettings.h"
#include "ReportedText.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QVariant>

using namespace ParameterKeys;

namespace {

constexpr QLatin1Char kEscape('%');
const QLatin1String kReselectedImageMode("image_mode");
const QString kSaving = QStringLiteral(".saving-");
constexpr const char* kCodec = "UTF-8";
constexpr std::chrono::seconds kLockTimeout{2};

// Path of device.ini; empty when the platform has no cache location.
QString iniPath()
{
    const QStringList locations = QStandardPaths::standardLocations(QStandardPaths::CacheLocation);
    qCDebug(settingsLog) << "系统缓存目录路径:" << locations;
    return locations.isEmpty() ? QString() : locations.first() + QStringLiteral("/device.ini");
}

// The whole file; empty for no file, nothing when there is one that cannot be read.
std::optional<QByteArray> contentsOf(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QByteArray();
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray contents = file.readAll();
    if (file.error() != QFile::NoError)
        return std::nullopt;
    return contents;
}

std::filesystem::path nativePath(const QString& path)
{
    return std::filesystem::u8path(path.toStdString());
}

// Gives @p path these contents, or leaves it as it is.
// @param folder for the new file, on the same file system: what a killed program leaves there is
//        removed with the folder by the next save
bool replace(const QString& path, const QByteArray& contents, const QString& folder)
{
    const QFileInfo old(path);
    if (old.exists() && !old.isWritable())
        return false;
    const QDateTime before = old.lastModified();
    const QString whole = folder + QStringLiteral("/whole");
    QSaveFile file(whole);
    // Explicit flush: QSaveFile does not notice that a disk becomes full while it flushes, and
    // would commit an empty file.
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
        !file.flush() || !file.commit())
        return false;
    if (old.exists())
        QFile::setPermissions(whole, old.permissions());
    // A link stays one; the file that it names is replaced.
    std::error_code error;
    std::filesystem::rename(nativePath(whole),
                            nativePath(old.exists() ? old.canonicalFilePath() : path), error);
    if (error)
        return false;
    // QSettings reads a file again only when its size or its time has changed, and the clock of a
    // file system is slower than two saves.
    if (before.isValid() && QFileInfo(path).lastModified() <= before) {
        QFile written(path);
        if (written.open(QIODevice::ReadWrite))
            written.setFileTime(before.addMSecs(1), QFileDevice::FileModificationTime);
    }
    return true;
}

// A name for a file of which earlier ones are kept: the first one that is free.
QString freeName(const QString& path)
{
    QString name = path;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = path + QLatin1Char('.') + QString::number(number);
    return name;
}

// QSettings parses a group when it is asked for, and does not find every name then: on Windows,
// where names are compared without case, one that ends with half of a surrogate pair was missing.
void parse(const QSettings& settings)
{
    settings.allKeys();
}

bool isDamaged(const QSettings& settings)
{
    parse(settings);
    return settings.status() == QSettings::FormatError;
}

// As text: a value that was set is a number, the same value read from a file is a text.
QMap<QString, QStringList> valuesOf(const QSettings& settings)
{
    QMap<QString, QStringList> values;
    const QStringList keys = settings.allKeys();
    for (const QString& key : keys) {
        const QVariant value = settings.value(key);
        values.insert(key, value.type() == QVariant::StringList ? value.toStringList()
                                                                : QStringList{value.toString()});
    }
    return values;
}

// A copy of an INI file under a name of its own, to be changed. QSettings caches the values of a
// path for the whole process, including values that it failed to write; a failed save must leave
// nothing in that cache. The copy lies beside the file, so that a save needs one folder only.
class IniCopy
{
public:
    IniCopy(const QString& path, const QByteArray& contents)
        : m_original(path)
        , m_directory(path + kSaving + QStringLiteral("XXXXXX"))
    {
        const QString copy = m_directory.filePath(QStringLiteral("device.ini"));
        QFile file(copy);
        if (!m_directory.isValid() || !file.open(QIODevice::WriteOnly) ||
            file.write(contents) != contents.size() || !file.flush())
            return;
        file.close();
        m_settings = std::make_unique<QSettings>(copy, QSettings::IniFormat);
        m_settings->setIniCodec(kCodec);
    }

    [[nodiscard]] QString folder() const { return m_directory.path(); }
    // Null when the copy could not be made.
    [[nodiscard]] QSettings* settings() const { return m_settings.get(); }

    // The file with all changes; nothing when it could not be written completely. QSettings does
    // not report a full disk.
    [[nodiscard]] std::optional<QByteArray> contents() const
    {
        m_settings->sync();
        std::optional<QByteArray> bytes = contentsOf(m_settings->fileName());
        if (!bytes)
            return std::nullopt;
        const IniCopy written(m_original, *bytes);
        if (!written.settings() || valuesOf(*written.settings()) != valuesOf(*m_settings))
            return std::nullopt;
        return bytes;
    }

    // Copies of a save that was killed. Only for who holds the lock of the file.
    static void removeLeftOver(const QString& path)
    {
        const QFileInfo file(path);
        const QStringList folders = file.dir().entryList(
            {file.fileName() + kSaving + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks);
        for (const QString& folder : folders)
            QDir(file.dir().filePath(folder)).removeRecursively();
    }

private:
    QString m_original;
    QTemporaryDir m_directory;
    std::unique_ptr<QSettings> m_settings;
};

} // namespace

bool DeviceIniStore::isSerialNumber(const QString& serial)
{
    return !ReportedText::orEmpty(serial).isEmpty();
}

QString DeviceIniStore::groupName(const QString& serial)
{
    if (serial.isEmpty())
        return QString(kEscape);
    // QSettings uses this name, in upper and lower case, for values without a group.
    const bool reserved = serial.compare(QLatin1String("General"), Qt::CaseInsensitive) == 0;
    QString group;
    group.reserve(serial.size());
    for (int i = 0; i < serial.size(); ++i) {
        const QChar c = serial.at(i);
        // A slash of either kind would divide the name into two groups.
        if (c == kEscape || c == QLatin1Char('/') || c == QLatin1Char('\\') || (reserved && i == 0))
            group += kEscape + QStringLiteral("%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            group += c;
    }
    return group;
}

QString DeviceIniStore::serialNumber(const QString& group)
{
    QString serial;
    serial.reserve(group.size());
    for (int i = 0; i < group.size(); ++i) {
        if (group.at(i) != kEscape) {
            serial += group.at(i);
        } else if (i + 2 < group.size()) {
            serial += QChar(group.midRef(i + 1, 2).toUShort(nullptr, 16));
            i += 2;
        }
    }
    return serial;
}

std::optional<PictureParameters> DeviceIniStore::read(const QString& serial) const
{
    const QString path = iniPath();
    // QSettings would wait for the writer of a pipe.
    if (path.isEmpty() || !isSerialNumber(serial) || !QFileInfo(path).isFile())
        return std::nullopt;
    QSettings settings(path, QSettings::IniFormat);
    settings.setIniCodec(kCodec);
    parse(settings);
    settings.beginGroup(groupName(serial));
    if (settings.allKeys().isEmpty())
        return std::nullopt;
    // Read as text first: toInt() then rejects a number that is too large for a setting.
    const auto number = [&settings](QLatin1String key) {
        return settings.value(key).toString().toInt();
    };
    PictureParameters picture;
    for (const PictureSettingRow& row : PictureSettings::rows())
        picture.*row.value = number(row.key);
    picture.imageMode = number(ImageMode);
    picture.reselectedImageMode = number(kReselectedImageMode);
    return picture;
}

bool DeviceIniStore::write(const QString& serial, const PictureParameters& picture,
                           const QSet<QString>& unknown) const
{
    const QString path = iniPath();
    if (path.isEmpty() || !isSerialNumber(serial) || !QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    FileLock lock;
    if (!lock.acquire(path + QStringLiteral(".lock"), kLockTimeout))
        return false;
    IniCopy::removeLeftOver(path);
    const std::optional<QByteArray> before = contentsOf(path);
    if (!before)
        return false;
    const IniCopy copy(path, *before);
    QSettings* settings = copy.settings();
    if (!settings)
        return false;
    // A rewrite loses damaged lines; the copy keeps them.
    if (isDamaged(*settings) &&
        !replace(freeName(path + QStringLiteral(".damaged")), *before, copy.folder()))
        return false;

    settings->beginGroup(groupName(serial));
    for (const PictureSettingRow& row : PictureSettings::rows()) {
        if (!unknown.contains(row.key))
            settings->setValue(row.key, picture.*row.value);
        else if (!settings->contains(row.key))
            return false; // it would read as 0, which the camera would get with the next opening
    }
    settings->setValue(ImageMode, picture.imageMode);
    settings->endGroup();
    const std::optional<QByteArray> after = copy.contents();
    return after && replace(path, *after, copy.folder());
}
