// The executable `tovik-plugin-check`: tells the author of a plug-in how Tovik will use it. The
// plug-in runs in a child process and is called through the functions that the library exports.
#include "tools/Child.h"
#include "tools/ElfFile.h"
#include "tools/OwnLibrary.h"
#include "tools/PluginExamination.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <getopt.h>

namespace {

constexpr int kFindings = 1;
constexpr int kCannotCheck = 2;

constexpr char kUsage[] = R"(Usage: tovik-plugin-check PLUGIN.so [--json] [--limit SECONDS]

Loads a plug-in as Tovik does, prints the values that Tovik reads from it, calls it with hostile
texts, finalises it and loads it twice more. The plug-in runs in a process of its own.

  --json           print one JSON object
  --limit SECONDS  end the process after this time, 1 to 3600 (default 20)

Exit status: 0 nothing is wrong; 1 something is; 2 the plug-in could not be checked.
)";

struct Options {
    std::string plugin;
    bool json = false;
    unsigned int limit = kDefaultLimit;
};

bool read_options(int argc, char** argv, Options& options)
{
    constexpr option kLongOptions[]
        = {{"json", no_argument, nullptr, 'j'}, {"limit", required_argument, nullptr, 'l'}, {}};
    opterr = 0;
    int found = 0;
    while ((found = getopt_long(argc, argv, "", kLongOptions, nullptr)) != -1) {
        if (found == 'j') {
            options.json = true;
        } else if (found != 'l' || !read_limit(optarg, options.limit)) {
            return false;
        }
    }
    if (optind + 1 != argc) {
        return false;
    }
    options.plugin = argv[optind];
    return true;
}

void examine(const Options& options, const LibraryFunctions& functions, Report& report)
{
    const std::string plugin = std::filesystem::canonical(options.plugin);
    const std::string fault = elf_fault(plugin);
    if (!fault.empty()) {
        report.wrong("file", plugin + " " + fault);
        return;
    }
    const std::string end
        = run_in_child(options.limit, report, [&](ChildProgress& progress, Report& childReport) {
              examine_plugin(functions, plugin, progress, childReport);
          });
    if (!end.empty()) {
        report.wrong(end.starts_with("did not return") ? "hang" : "crash", end);
    }
}

int cannot_check(const std::string& why)
{
    std::fprintf(stderr, "tovik-plugin-check: %s\n", escaped(why).c_str());
    return kCannotCheck;
}

int run(const Options& options)
{
    const std::string library = own_library();
    if (!std::filesystem::exists(library)) {
        return cannot_check("Tovik's library is missing: " + library);
    }
    if (!std::filesystem::exists(options.plugin)) {
        return cannot_check("there is no file " + options.plugin);
    }
    LibraryFunctions functions = {};
    const std::string failure = load_library_functions(library, functions);
    if (!failure.empty()) {
        return cannot_check("Tovik's library cannot be loaded: " + failure);
    }
    Report report;
    examine(options, functions, report);
    const std::string text = options.json ? report.json("plugin", options.plugin) : report.plain();
    if (!print(text)) {
        return cannot_check("cannot write the findings");
    }
    return report.any_wrong() ? kFindings : 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    Options options;
    if (!read_options(argc, argv, options)) {
        return cannot_check("usage: tovik-plugin-check PLUGIN.so [--json] [--limit SECONDS]");
    }
    try {
        return run(options);
    } catch (const std::exception& failure) {
        return cannot_check(failure.what());
    }
}
