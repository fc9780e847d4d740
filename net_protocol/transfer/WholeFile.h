#pragma once

#include <cstdint>
#include <memory>
#include <QString>

namespace Brivane {

/// A file under a temporary name, the given one with "." and six letters more, that gets its name
/// when it is complete. Without commit() it is removed. Defined in WholeFile_<platform>.cpp.
class WholeFile
{
public:
    WholeFile();
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    /// Creates it. Unbuffered: a write to a full disk fails itself, and not a later one.
    bool open(const QString& name);
    [[nodiscard]] bool isOpen() const;
    bool write(const char* data, std::int64_t size);
    /// Of the open file.
    [[nodiscard]] int handle() const;
    /// Closes it and replaces the file that had its name.
    bool commit();
    void discard();

    /// Why the last operation failed.
    [[nodiscard]] QString errorString() const;

private:
    class Storage;
    std::unique_ptr<Storage> m_storage;
};

} // namespace Brivane
