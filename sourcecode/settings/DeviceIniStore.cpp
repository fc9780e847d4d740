#include "DeviceIniStore.h"

#include "ParameterKeys.h"

#include <memory>
#include <QDebug>
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

// Path of device.ini; empty when the platform has no cache location.
QString iniPath()
{
    const QStringList locations = QStandardPaths::standardLocations(QStandardPaths::CacheLocation);
    qDebug() << "系统缓存目录路径:" << locations;
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

bool replace(const QString& path, const QByteArray& contents)
{
    QSaveFile file(path);
    // Flushed by hand: QSaveFile does not notice a disk that fills up while it flushes, and would
    // put an empty file in the place of the old one.
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() &&
           file.flush() && file.commit();
}

// As text: what is a number here may be a text that was read from a file there.
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

// A copy of an INI file, opened under a name that was never used before. QSettings keeps what it
// knows of a path for the whole process, values that it failed to write included; a save that has
// failed must leave nothing behind.
class IniCopy
{
public:
    explicit IniCopy(const QByteArray& contents)
    {
        const QString path = m_directory.filePath(QStringLiteral("device.ini"));
        QFile file(path);
        if (!m_directory.isValid() || !file.open(QIODevice::WriteOnly) ||
            file.write(contents) != contents.size() || !file.flush())
            return;
        file.close();
        m_settings = std::make_unique<QSettings>(path, QSettings::IniFormat);
        m_settings->setIniCodec("UTF-8");
        m_settings->allKeys(); // has every group parsed, which is otherwise put off
        m_damaged = m_settings->status() == QSettings::FormatError;
    }

    [[nodiscard]] QSettings* settings() const { return m_settings.get(); }
    [[nodiscard]] bool isDamaged() const { return m_damaged; }

    // The file with all changes; nothing when it could not be written completely. QSettings does
    // not tell that of a disk that is full.
    [[nodiscard]] std::optional<QByteArray> contents() const
    {
        m_settings->sync();
        std::optional<QByteArray> bytes = contentsOf(m_settings->fileName());
        if (!bytes)
            return std::nullopt;
        const IniCopy written(*bytes);
        if (!written.settings() || valuesOf(*written.settings()) != valuesOf(*m_settings))
            return std::nullopt;
        return bytes;
    }

private:
    QTemporaryDir m_directory;
    std::unique_ptr<QSettings> m_settings; // null when the copy could not be made
    bool m_damaged = false;
};

} // namespace

bool DeviceIniStore::isSerialNumber(const QString& serial)
{
    // U+FFFF stands for a camera that could not be asked.
    return !serial.isEmpty() && serial != QString(QChar(0xFFFF));
}

QString DeviceIniStore::groupName(const QString& serial)
{
    if (serial.isEmpty())
        return QString(kEscape);
    // QSettings takes this name, in any case, for values without a group.
    const bool reserved = serial.compare(QLatin1String("General"), Qt::CaseInsensitive) == 0;
    QString group;
    group.reserve(serial.size());
    for (int i = 0; i < serial.size(); ++i) {
        const QChar c = serial.at(i);
        // Slashes of either kind would divide the name into groups.
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
    if (path.isEmpty() || !isSerialNumber(serial))
        return std::nullopt;
    const std::optional<QByteArray> contents = contentsOf(path);
    if (!contents || contents->isEmpty())
        return std::nullopt;
    const IniCopy copy(*contents);
    QSettings* settings = copy.settings();
    const QString group = groupName(serial);
    if (!settings)
        return std::nullopt;
    settings->beginGroup(group);
    if (settings->allKeys().isEmpty())
        return std::nullopt;
    // By way of the text: a number too large for a setting is no number then.
    const auto number = [settings](QLatin1String key) {
        return settings->value(key).toString().toInt();
    };
    PictureParameters picture;
    picture.bright = number(Bright);
    picture.contrast = number(Contrast);
    picture.saturation = number(Saturation);
    picture.sharpness = number(Sharpness);
    picture.imageMode = number(ImageMode);
    picture.reselectedImageMode = number(kReselectedImageMode);
    settings->endGroup();
    return picture;
}

bool DeviceIniStore::write(const QString& serial, const PictureParameters& picture) const
{
    const QString path = iniPath();
    if (path.isEmpty() || !isSerialNumber(serial) || !QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    const std::optional<QByteArray> before = contentsOf(path);
    if (!before)
        return false;
    const IniCopy copy(*before);
    QSettings* settings = copy.settings();
    if (!settings)
        return false;
    // Damaged lines do not come through a rewrite; whoever wants them finds them in the copy.
    if (copy.isDamaged() && !replace(path + QStringLiteral(".damaged"), *before))
        return false;

    settings->beginGroup(groupName(serial));
    settings->setValue(Bright, picture.bright);
    settings->setValue(Contrast, picture.contrast);
    settings->setValue(Saturation, picture.saturation);
    settings->setValue(Sharpness, picture.sharpness);
    settings->setValue(ImageMode, picture.imageMode);
    settings->endGroup();
    const std::optional<QByteArray> after = copy.contents();
    return after && replace(path, *after);
}
