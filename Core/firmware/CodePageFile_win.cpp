#include "CodePageFile.h"

#include <cstdio>
#include <QDir>
#include <qt_windows.h>
#include <QTextCodec>

namespace {

const wchar_t* units(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

/// The name that the C library and the system read from @p bytes; empty when the bytes are no text
/// in the system's code page.
QString readBySystem(const QByteArray& bytes)
{
    const auto convert = [&bytes](wchar_t* out, int size) {
        return ::MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, bytes.constData(), bytes.size(),
                                     out, size);
    };
    std::wstring name(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
    convert(name.data(), static_cast<int>(name.size()));
    return QString::fromStdWString(name);
}

/// The path with the names of at most eight characters and an extension that most volumes keep for
/// old programs. Empty when the volume keeps none.
QString shortPath(const QString& path)
{
    const QString native = QDir::toNativeSeparators(path);
    std::wstring found(::GetShortPathNameW(units(native), nullptr, 0), L'\0');
    found.resize(
        ::GetShortPathNameW(units(native), found.data(), static_cast<DWORD>(found.size())));
    return QString::fromStdWString(found);
}

bool openByBytes(QFile& file, const QString& path, const QTextCodec& codec)
{
    if (path.isEmpty() || !codec.canEncode(path))
        return false;
    const QByteArray bytes = codec.fromUnicode(path);
    // In another code page the bytes are another name, and a file of that name may exist.
    if (readBySystem(bytes) != path)
        return false;
    std::FILE* stream = std::fopen(bytes.constData(), "rb");
    if (!stream)
        return false;
    if (file.open(stream, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return true;
    std::fclose(stream);
    return false;
}

} // namespace

bool CodePageFile::open(QFile& file, const QString& path, const QTextCodec& codec)
{
    if (openByBytes(file, path, codec) || openByBytes(file, shortPath(path), codec))
        return true;
    // A short path is not always plain: "Müller" is short enough to stay in it.
    file.setFileName(path);
    return file.open(QIODevice::ReadOnly);
}
