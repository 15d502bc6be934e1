#include "tools/TraceFile.h"

#include <fstream>
#include <stdexcept>

namespace {

// The file ends with the path, zeroes up to this capacity, and the mark.
constexpr std::size_t kCapacity = 4096;
constexpr char kMark[] = "\ntovik-plugin-trace\n";
constexpr std::size_t kEndSize = kCapacity + sizeof kMark;

} // namespace

void append_traced_path(const std::string& file, const std::string& path)
{
    if (path.size() >= kCapacity) {
        throw std::runtime_error("the path of the plug-in is too long");
    }
    std::string end = path;
    end.resize(kCapacity);
    end.append(kMark, sizeof kMark);
    std::ofstream stream(file, std::ios::binary | std::ios::app);
    stream << end << std::flush;
    if (!stream) {
        throw std::runtime_error(file + " cannot be written");
    }
}

std::string traced_path(const std::string& file)
{
    std::string end(kEndSize, '\0');
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(-static_cast<std::streamoff>(kEndSize), std::ios::end);
    stream.read(end.data(), static_cast<std::streamsize>(end.size()));
    if (!stream || end.substr(kCapacity) != std::string(kMark, sizeof kMark)) {
        return "";
    }
    return end.substr(0, end.find('\0'));
}
