#include "FirmwareImage.h"

#include "FirmwareFile.h"

#include <QDebug>
#include <QFile>
#include <QTextCodec>

std::optional<QByteArray> FirmwareImage::read(const QString& path)
{
    const QTextCodec* codec = QTextCodec::codecForName("GB2312");
    QFile file;
    if (!codec || !codec->canEncode(path) || !FirmwareFile::open(file, path, *codec)) {
        qDebug() << "打开升级文件失败：" << path;
        return std::nullopt;
    }
    if (file.size() > kMaxBytes) {
        qDebug() << "firmware image too large:" << file.size();
        return std::nullopt;
    }
    QByteArray image = file.read(kMaxBytes);
    if (image.size() != file.size()) {
        qDebug() << "firmware image cannot be read:" << file.errorString();
        return std::nullopt;
    }
    return image;
}
