// The executable `tovik-doctor`: reports what a run of a product would do, without a window.
//
// The library derives the program's path from the first word of the process's command line, so the
// doctor executes itself a second time with the product's program as that word. It has no library
// of its own: WebKit would open such a file in lib/ in every web process.
#include "tools/Doctor.h"
#include "host/ProductLayout.h"
#include "process/ProcessState.h"
#include "tools/CallRecorder.h"
#include "tools/Child.h"
#include "tools/OwnLibrary.h"
#include "util/Utility.h"
#include "webapp/Options.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <getopt.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr int kFindings = 1;
constexpr int kCannotTell = 2;
constexpr std::uint32_t kNoTrace = 2; // see g_Verbose

constexpr char kUsage[] = R"(Usage: tovik-doctor [--library PATH] [--program PATH] [OPTION]... [URL]

Prints what a product would do if it were started with these options (see tovik --help), at which
places it looks, and what is wrong.

  --library PATH  the library of the product (default: that of this installation)
  --program PATH  the program that loads it (default: bin/NAME for lib/libNAMEgui.so)

Exit status: 0 nothing is wrong; 1 something is; 2 the examination failed.
)";

/// Folder of the installed guides, from the path of this program; empty where there is none.
std::string guides()
{
    std::error_code none;
    const fs::path program = fs::read_symlink("/proc/self/exe", none);
    const fs::path folder = fs::canonical(program.parent_path() / TOVIK_GUIDES, none);
    return folder.native();
}

void print_usage()
{
    std::fputs(kUsage, stdout);
    const std::string folder = guides();
    std::printf("\ndebugging.md tells more, in %s\n",
        folder.empty() ? "docs/ of the package tovik-dev" : escaped(folder).c_str());
}

/// Marks the second execution, which has the product's program as its first word.
constexpr char kExamine[] = "--examine";

/// Program that loads this library; named after the library's stem when its file name is not of the
/// form that a host loads.
fs::path program_of(const fs::path& library)
{
    const std::string file = library.filename();
    const std::string stem = library.stem();
    return library.parent_path().parent_path() / "bin" / program_of_library(file).value_or(stem);
}

/// Examines the installation, and the run that the process arguments ask for; returns the exit
/// status.
int examine(const std::string& program, bool prints)
{
    Report report;
    examine_installation(program, report);
    examine_plugin_files(report);
    const std::string end
        = run_in_child(kDefaultLimit, report, [prints](ChildProgress& progress, Report& child) {
              progress.begin("the plug-in, used as in the user-interface process");
              g_CallRecorder.loadsPlugin = true;
              examine_run(prints, child);
          });
    if (!end.empty()) {
        report.wrong("plug-in of the window", end + "; ask tovik-plugin-check");
        if (!report.has("display")) { // the last subject of the child
            examine_run(prints, report);
        }
    }
    examine_surroundings(report);
    if (const std::string folder = guides(); !folder.empty()) {
        report.ok("guides", folder);
    }
    if (!print(report.plain())) {
        std::fprintf(stderr, "tovik-doctor: cannot write the findings\n");
        return kCannotTell;
    }
    return report.any_wrong() ? kFindings : 0;
}

/// Executes this program with the product's program as its first word; returns only when that
/// fails.
int start_anew(const std::string& library, std::string program, char** options)
{
    std::string marker = kExamine;
    std::string module = library;
    std::vector<char*> words = {program.data(), marker.data(), module.data()};
    for (; *options != nullptr; ++options) {
        words.push_back(*options);
    }
    words.push_back(nullptr);
    execv("/proc/self/exe", words.data());
    std::perror("tovik-doctor: /proc/self/exe");
    return kCannotTell;
}

/// The product to examine, and where the words that are for its host begin.
struct Request {
    fs::path library = own_library();
    fs::path program; // empty for the one that loads the library
    int hostWords = 1;
};

/// Reads the options of this tool, which precede those of the host; false, with a line on standard
/// error, when one has no value.
bool read_request(int argc, char** argv, Request& request)
{
    constexpr struct option kLongOptions[] = {{"library", required_argument, nullptr, 'l'},
        {"program", required_argument, nullptr, 'p'}, {}};
    opterr = 0;
    for (;;) {
        // "+" ends the search at the first other word; ":" tells a missing value from such a word.
        const int found = getopt_long(argc, argv, "+:", kLongOptions, nullptr);
        const bool hasValue = found == 'l' || found == 'p';
        if (found == ':' || (hasValue && *optarg == 0)) {
            std::fprintf(stderr, "tovik-doctor: %s needs a path; see tovik-doctor --help\n",
                argv[request.hostWords]);
            return false;
        }
        if (!hasValue) {
            return true;
        }
        (found == 'l' ? request.library : request.program)
            = fs::absolute(optarg).lexically_normal();
        request.hostWords = optind;
    }
}

int run(int argc, char** argv)
{
    Request request;
    if (!read_request(argc, argv, request)) {
        return kCannotTell;
    }
    if (request.program.empty()) {
        request.program = program_of(request.library);
    }
    return start_anew(request.library, request.program, argv + request.hostWords);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        print_usage();
        return 0;
    }
    try {
        if (argc < 3 || std::strcmp(argv[1], kExamine) != 0) {
            return run(argc, argv);
        }
        g_CallRecorder.module = argv[2];
        g_FileObserver = record_place;
        std::vector<char*> arguments(argv, argv + argc);
        arguments.erase(arguments.begin() + 1, arguments.begin() + 3);
        const bool prints = std::erase_if(arguments, [](const char* word) {
            return std::strcmp(word, option("--print").name) == 0;
        }) > 0;
        g_ARGC = static_cast<int>(arguments.size());
        arguments.push_back(nullptr);
        g_ARGV = arguments.data();
        g_Verbose = kNoTrace;
        return examine(arguments[0], prints);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "tovik-doctor: %s\n", escaped(failure.what()).c_str());
        return kCannotTell;
    }
}
