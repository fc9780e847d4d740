#include "FirmwareImage.h"

#include "CodePageFile.h"
#include "LogCategories.h"

#include <QFile>
#include <QTextCodec>

std::optional<QByteArray> FirmwareImage::read(const QString& path)
{
    const QTextCodec* codec = QTextCodec::codecForName("GB2312");
    QFile file;
    if (!codec || !CodePageFile::open(file, path, *codec)) {
        qCDebug(updateLog) << "打开升级文件失败：" << path;
        return std::nullopt;
    }
    if (file.size() > kMaxBytes) {
        qCDebug(updateLog) << "firmware image too large:" << file.size();
        return std::nullopt;
    }
    QByteArray image = file.read(kMaxBytes);
    if (image.size() != file.size()) {
        qCDebug(updateLog) << "firmware image cannot be read:" << file.errorString();
        return std::nullopt;
    }
    return image;
}
