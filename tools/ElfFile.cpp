#include "tools/ElfFile.h"

#include <cstring>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <link.h>
#include <string_view>

namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);
using Section = ElfW(Shdr);
using Symbol = ElfW(Sym);

constexpr char kCut[] = "is cut off: parts that it announces lie after its end";

template <typename Record> bool read_at(std::ifstream& file, std::uint64_t offset, Record& record)
{
    file.seekg(static_cast<std::streamoff>(offset));
    return bool(file.read(reinterpret_cast<char*>(&record), sizeof record));
}

/// Whether a file of this size has `length` bytes at `offset`; correct also where their sum would
/// wrap around.
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

/// Reads the section header of this index.
bool read_section_header(
    std::ifstream& file, const Header& header, std::uint64_t index, Section& section)
{
    return read_at(file, header.e_shoff + index * header.e_shentsize, section);
}

/// What the section holds; empty when it does not lie in the file.
std::string content_of(std::ifstream& file, std::uint64_t size, const Section& section)
{
    std::string content;
    if (holds(size, section.sh_offset, section.sh_size)) {
        content.resize(section.sh_size);
        file.seekg(static_cast<std::streamoff>(section.sh_offset));
        file.read(content.data(), static_cast<std::streamsize>(content.size()));
    }
    return content;
}

/// Whether one of the symbols is defined and has this name; `names` is their string table.
bool defines(std::string_view symbols, std::string_view names, const std::string& name)
{
    const std::string_view whole(name.c_str(), name.size() + 1);
    for (; symbols.size() >= sizeof(Symbol); symbols.remove_prefix(sizeof(Symbol))) {
        Symbol symbol = {};
        std::memcpy(&symbol, symbols.data(), sizeof symbol);
        if (symbol.st_shndx != SHN_UNDEF && symbol.st_name < names.size()
            && names.substr(symbol.st_name, whole.size()) == whole) {
            return true;
        }
    }
    return false;
}

/// What in the header keeps the file from being a library of this machine; empty when nothing does.
/// whole  whether the file holds the whole header; else the rest of it is zeroes
std::string header_fault(const Header& header, bool whole)
{
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0) {
        return "is not a library (no ELF file)";
    }
    if (!whole) {
        return kCut;
    }
    if (!is_of_this_machine(header)) {
        return "is of another architecture (ELF machine " + std::to_string(header.e_machine) + ")";
    }
    return header.e_type == ET_DYN ? "" : "is an ELF file, but not a shared library";
}

/// Whether every segment and the section headers lie within the file.
bool holds_all_parts(std::ifstream& file, std::uint64_t size, const Header& header)
{
    for (unsigned int i = 0; i < header.e_phnum; ++i) {
        Segment segment = {};
        if (!read_at(file, header.e_phoff + std::uint64_t {i} * header.e_phentsize, segment)
            || !holds(size, segment.p_offset, segment.p_filesz)) {
            return false;
        }
    }
    const std::uint64_t sections = std::uint64_t {header.e_shnum} * header.e_shentsize;
    return holds(size, header.e_shoff, sections);
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
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return "cannot be read";
    }
    Header header = {};
    const bool whole = read_at(file, 0, header);
    const std::string fault = header_fault(header, whole);
    return fault.empty() && !holds_all_parts(file, std::filesystem::file_size(path), header)
        ? kCut
        : fault;
}

bool exports(const std::string& path, const std::string& name)
{
    if (!elf_fault(path).empty()) {
        return false;
    }
    const std::uint64_t size = std::filesystem::file_size(path);
    std::ifstream file(path, std::ios::binary);
    Header header = {};
    read_at(file, 0, header);
    for (unsigned int i = 0; i < header.e_shnum; ++i) {
        Section symbols = {};
        Section names = {};
        if (read_section_header(file, header, i, symbols) && symbols.sh_type == SHT_DYNSYM
            && read_section_header(file, header, symbols.sh_link, names)) {
            return defines(content_of(file, size, symbols), content_of(file, size, names), name);
        }
    }
    return false;
}
