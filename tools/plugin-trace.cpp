// The executable `tovik-plugin-trace`: makes a plug-in that forwards every call to another one and
// shows it.
#include "tools/ElfFile.h"
#include "tools/EntryPoints.h"
#include "tools/Report.h"
#include "tools/TraceFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <getopt.h>
#include <iterator>
#include <stdexcept>
#include <unistd.h>

namespace {

constexpr int kNotMade = 2;

constexpr char kUsage[] = R"(Usage: tovik-plugin-trace PLUGIN.so -o FILE

Makes FILE, a plug-in that forwards every call to PLUGIN.so and shows it on standard error: the
process, the call, its result and its time. After "WRONG" it says what is wrong. Put FILE in the
product in place of the plug-in; PLUGIN.so has to stay where it is.

  -o, --output FILE    the plug-in to make, in place of an earlier one that this program has made

In the environment of the run:
  TOVIK_SECRET_NAMES   words separated by commas: the values of properties whose name holds one of
                       them are not shown (default pin,password,secret; "+" in front adds to these)

Exit status: 0 FILE is made; 2 it is not.
)";

int not_made(const std::string& why)
{
    std::fprintf(stderr, "tovik-plugin-trace: %s\n", escaped(why).c_str());
    return kNotMade;
}

/// Whether the plug-in has the set of entry points whose names begin so.
bool has_set(const std::string& plugin, const std::string& prefix)
{
    return std::all_of(std::begin(kOperations), std::end(kOperations),
        [&](const char* name) { return exports(plugin, prefix + name); });
}

/// The tracing library, installed beside this program, for the set that the host uses.
std::filesystem::path trace_library(const std::string& plugin)
{
    const bool newer = has_set(plugin, "Plg");
    if (!newer && !has_set(plugin, "P_")) {
        throw std::runtime_error(plugin + " is no plug-in: no set of entry points is complete");
    }
    const std::filesystem::path own = std::filesystem::read_symlink("/proc/self/exe");
    return own.parent_path().parent_path() / "trace" / (newer ? "newer.so" : "older.so");
}

void make_trace(const std::string& plugin, const std::filesystem::path& file)
{
    if (!std::filesystem::exists(plugin)) {
        throw std::runtime_error("there is no file " + plugin);
    }
    const std::string real = std::filesystem::canonical(plugin);
    const std::string fault = elf_fault(real);
    if (!fault.empty()) {
        throw std::runtime_error(real + " " + fault);
    }
    if (!traced_path(real).empty()) {
        throw std::runtime_error(real + " is a plug-in that this program has made");
    }
    if (std::filesystem::exists(file) && traced_path(file).empty()) {
        throw std::runtime_error(file.string() + " is there already, and is kept");
    }
    // Renamed at the end: a process may have an earlier one open.
    const std::string made = file.string() + "." + std::to_string(getpid());
    try {
        std::filesystem::copy_file(trace_library(real), made);
        append_traced_path(made, real);
        std::filesystem::rename(made, file);
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(made, ignored);
        throw;
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    constexpr option kLongOptions[] = {{"output", required_argument, nullptr, 'o'}, {}};
    std::string output;
    int found = 0;
    opterr = 0;
    while ((found = getopt_long(argc, argv, "o:", kLongOptions, nullptr)) == 'o') {
        output = optarg;
    }
    if (found != -1 || optind + 1 != argc || output.empty()) {
        return not_made("usage: tovik-plugin-trace PLUGIN.so -o FILE");
    }
    try {
        make_trace(argv[optind], output);
    } catch (const std::exception& failure) {
        return not_made(failure.what());
    }
    return 0;
}
