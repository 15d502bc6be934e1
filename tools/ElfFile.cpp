#include "tools/ElfFile.h"

#include <cstring>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <link.h>

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

template <typename Record> bool read_at(std::ifstream& file, std::uint64_t offset, Record& record)
{
    file.seekg(static_cast<std::streamoff>(offset));
    return bool(file.read(reinterpret_cast<char*>(&record), sizeof record));
}

/// Whether a file of this size has `length` bytes at `offset`, of which the sum may wrap around.
bool holds(std::uint64_t size, std::uint64_t offset, std::uint64_t length)
{
    return offset <= size && length <= size - offset;
}

/// Whether the file is of the architecture of this program.
bool is_of_this_machine(const Header& header)
{
    Header own = {};
    std::ifstream program("/proc/self/exe", std::ios::binary);
    return read_at(program, 0, own) && header.e_machine == own.e_machine
        && header.e_ident[EI_CLASS] == own.e_ident[EI_CLASS]
        && header.e_ident[EI_DATA] == own.e_ident[EI_DATA];
}

} // namespace

std::string elf_fault(const std::string& path)
{
    if (std::filesystem::is_directory(path)) {
        return "is a directory, not a library";
    }
    if (!std::filesystem::is_regular_file(path)) {
        return "is no regular file";
    }
    const std::uint64_t size = std::filesystem::file_size(path);
    std::ifstream file(path, std::ios::binary);
    Header header = {};
    if (!file) {
        return "cannot be read";
    }
    const bool whole = read_at(file, 0, header);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return "is not a library (no ELF file)";
    }
    constexpr char kCut[] = "is cut off: parts that it announces lie behind its end";
    if (!whole) {
        return kCut;
    }
    if (!is_of_this_machine(header)) {
        return "is of another architecture (ELF machine " + std::to_string(header.e_machine) + ")";
    }
    if (header.e_type != ET_DYN) {
        return "is an ELF file, but not a shared library";
    }
    file.clear();
    for (unsigned int i = 0; i < header.e_phnum; ++i) {
        Segment segment = {};
        if (!read_at(file, header.e_phoff + std::uint64_t {i} * header.e_phentsize, segment)
            || !holds(size, segment.p_offset, segment.p_filesz)) {
            return kCut;
        }
    }
    const std::uint64_t sections = std::uint64_t {header.e_shnum} * header.e_shentsize;
    return holds(size, header.e_shoff, sections) ? "" : kCut;
}
