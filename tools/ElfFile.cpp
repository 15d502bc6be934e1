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

bool read_head(std::ifstream& file, const Header& header, std::uint64_t index, Section& section)
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

/// Whether a symbol of this name, which is one of the texts in `names`, is defined.
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
        if (read_head(file, header, i, symbols) && symbols.sh_type == SHT_DYNSYM
            && read_head(file, header, symbols.sh_link, names)) {
            return defines(content_of(file, size, symbols), content_of(file, size, names), name);
        }
    }
    return false;
}
