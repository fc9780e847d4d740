#pragma once

#include "WholeFile.h"

#include <cstdint>
#include <string>

namespace Brivane {

/// A file that appears only as a whole: until commit() has succeeded, what had its name before is
/// unchanged. Without commit() it leaves nothing.
class DownloadFile
{
public:
    DownloadFile();
    ~DownloadFile();
    DownloadFile(const DownloadFile&) = delete;
    DownloadFile& operator=(const DownloadFile&) = delete;

    /// @param path UTF-8
    /// @return false when no file can be created at @p path, see errorText()
    bool open(const std::string& path);
    bool write(const char* data, std::int64_t size);
    /// Flushes the data to the disk and gives the file its name. Waits some seconds for another
    /// program that holds the file.
    bool commit();
    /// Removes what was written.
    void discard();

    /// Why the last operation failed, an English sentence.
    [[nodiscard]] const std::string& errorText() const { return m_errorText; }

private:
    bool fail(const QString& reason);

    WholeFile m_file;
    std::string m_errorText;
};

} // namespace Brivane
