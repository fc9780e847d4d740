#include "SanitizerPreload.h"

#include <cstdlib>
#include <cstring>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace virtualcamera {

namespace {

std::string findInPath(const std::string& program)
{
    if (program.find('/') != std::string::npos)
        return program;
    const char* path = std::getenv("PATH");
    std::istringstream directories(path ? path : "");
    for (std::string directory; std::getline(directories, directory, ':');) {
        const std::filesystem::path candidate = std::filesystem::path(directory) / program;
        std::error_code ignored;
        if (std::filesystem::is_regular_file(candidate, ignored))
            return candidate;
    }
    return program;
}

/// Reads the names of the libraries that a 64-bit ELF file needs.
class ElfFile
{
public:
    explicit ElfFile(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        m_bytes.assign(std::istreambuf_iterator<char>(file), {});
    }

    std::vector<std::string> neededLibraries() const
    {
        std::vector<std::string> names;
        Elf64_Ehdr header{};
        if (!read(0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
            header.e_ident[EI_CLASS] != ELFCLASS64)
            return names;
        std::vector<Elf64_Phdr> segments(header.e_phnum);
        for (std::size_t i = 0; i < segments.size(); ++i)
            if (!read(header.e_phoff + i * sizeof(Elf64_Phdr), segments[i]))
                return names;
        for (const Elf64_Phdr& segment : segments)
            if (segment.p_type == PT_DYNAMIC)
                collect(segment, segments, names);
        return names;
    }

private:
    template <typename Struct>
    bool read(std::size_t offset, Struct& to) const
    {
        if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof to)
            return false;
        std::memcpy(&to, m_bytes.data() + offset, sizeof to);
        return true;
    }

    static std::size_t fileOffset(Elf64_Addr address, const std::vector<Elf64_Phdr>& segments)
    {
        for (const Elf64_Phdr& segment : segments)
            if (segment.p_type == PT_LOAD && address >= segment.p_vaddr &&
                address < segment.p_vaddr + segment.p_filesz)
                return address - segment.p_vaddr + segment.p_offset;
        return 0;
    }

    void collect(const Elf64_Phdr& dynamic, const std::vector<Elf64_Phdr>& segments,
                 std::vector<std::string>& names) const
    {
        std::vector<std::size_t> nameOffsets;
        std::size_t strings = 0;
        Elf64_Dyn entry{};
        for (std::size_t at = dynamic.p_offset; read(at, entry) && entry.d_tag != DT_NULL;
             at += sizeof entry) {
            if (entry.d_tag == DT_NEEDED)
                nameOffsets.push_back(entry.d_un.d_val);
            else if (entry.d_tag == DT_STRTAB)
                strings = fileOffset(entry.d_un.d_ptr, segments);
        }
        for (const std::size_t offset : nameOffsets)
            if (strings + offset < m_bytes.size())
                names.emplace_back(m_bytes.data() + strings + offset);
    }

    std::vector<char> m_bytes;
};

} // namespace

std::string sanitizerPreload(const std::string& program)
{
    if (const char* given = std::getenv("VIRTUALCAMERA_SANITIZER_PRELOAD"))
        return given;
    for (const std::string& name : ElfFile(findInPath(program)).neededLibraries())
        if (name.rfind("libasan.", 0) == 0 || name.rfind("libtsan.", 0) == 0)
            return name;
    return {};
}

} // namespace virtualcamera
