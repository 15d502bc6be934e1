// The executable `tovik`: finds the library of this installation, loads it and passes the command
// line to it. It links to the C library alone, so that "--help" and a start by a bare name, which
// executes the program a second time, do not load GTK and WebKit.
#include "host/Answer.h"
#include "host/Engine.h"
#include "host/Graphics.h"
#include "host/Inspector.h"
#include "host/ProductLayout.h"
#include "host/Secrets.h"
#include "host/Texts.h"
#include "host/View.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

constexpr int kNoDisplay = 3;

/// Sets up what a run relies on, whatever the caller has closed or ignored.
void set_up_process()
{
    // A file that is opened later must not become a standard stream. /dev/null is opened in the
    // opposite direction, so that using it fails as using a closed stream does.
    for (int stream = 0; stream < 3; ++stream) {
        if (fcntl(stream, F_GETFD) < 0) {
            open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
        }
    }
    // If the signal were ignored, waiting for a script would not return its status.
    std::signal(SIGCHLD, SIG_DFL);
    // Each line of a trace is readable while the dialog runs, and is not lost when a signal ends
    // it.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
}

bool has_word(int argc, char** argv, const char* name)
{
    return std::any_of(argv, argv + argc, [=](char* word) { return !std::strcmp(word, name); });
}

/// Paths of this executable and of the library; set before anything runs.
constinit char g_Program[PATH_MAX] = "";
constinit char g_Library[PATH_MAX] = "";

const char* program_name()
{
    return std::strrchr(g_Program, '/') + 1;
}

/// Stores the path of this executable, links resolved; false when it cannot be read.
bool find_program()
{
    const ssize_t length = readlink("/proc/self/exe", g_Program, sizeof g_Program - 1);
    return length > 0 && *g_Program == '/';
}

/// Derives the path of the library from that of this program: a product of another brand has both
/// under its own name.
bool find_library()
{
    const std::string_view program = g_Program;
    const std::size_t lastSlash = program.rfind('/');
    return lastSlash > 0
        && store_library_path(
            g_Library, program.substr(0, program.rfind('/', lastSlash - 1)), program_name());
}

/// The path from which the library would derive a directory other than that of this program, or
/// null when it would derive the right one. The library reads the first word of the command line up
/// to a space, and replaces the first "/bin/" of the program's path by "/lib/".
const char* misread_path(const char* firstWord)
{
    if (std::strchr(firstWord, ' ') != nullptr) {
        return firstWord;
    }
    const char* bin = std::strstr(g_Program, "/bin/");
    return bin != nullptr && bin + 4 != std::strrchr(g_Program, '/') ? g_Program : nullptr;
}

/// Advice to install the Debian package whose library the loader's message names; empty for none.
const char* missing_package(const char* loaderText)
{
    if (std::strstr(loaderText, "libwebkit2gtk-4.1") != nullptr
        || std::strstr(loaderText, "libjavascriptcoregtk-4.1") != nullptr) {
        return "; install the package libwebkit2gtk-4.1-0";
    }
    return std::strstr(loaderText, "libgtk-3") == nullptr ? "" : "; install the package libgtk-3-0";
}

/// Loads the library, checks that there is a display, and runs.
int run(int argc, char** argv)
{
    Library library = {dlopen(g_Library, RTLD_NOW | RTLD_LOCAL), g_Library};
    if (library.handle == nullptr) {
        const char* reason = dlerror();
        std::fprintf(
            stderr, "tovik: cannot load %s: %s%s\n", library.path, reason, missing_package(reason));
        return kCannotStart;
    }
    // The library shows no window without a display and says nothing about it; GTK does.
    if (function_of<int(int*, char***)>(library, "gtk_init_check")(nullptr, nullptr) == 0) {
        std::fprintf(stderr, "tovik: cannot open a display; set DISPLAY or WAYLAND_DISPLAY\n");
        return kNoDisplay;
    }
    make_private_storage(library, program_name());
    refuse_downloads(library);
    const int printer = printing_process(argc, argv);
    end_with(library, printer);
    const bool inspect = inspect_option(argc, argv) != nullptr;
    if (inspect) {
        prepare_inspector(library);
    }
    Run run = {library, argc, argv, has_word(argc, argv, "--console"), inspect, nullptr, false};
    await_view(run);
    report_missing_page(run);
    const int status = function_of<int(int, char**)>(library, "Main")(argc, argv);
    return printer != 0 && run.webProcessEnded ? kWebProcessEnded : status;
}

/// Prints the text of "--help" or "--version", to standard error if there is "--print" too; false
/// when the command line has neither.
bool has_answered_option(int argc, char** argv, bool print)
{
    for (const auto& [option, text] : {std::pair("--help", kHelp), {"--version", kVersion}}) {
        if (has_word(argc, argv, option)) {
            std::fputs(text, print ? stderr : stdout);
            return true;
        }
    }
    return false;
}

/// Finds this program and its library; false, with a line on standard error, when the program
/// cannot run from its place. A program that was started by a bare name executes itself by its
/// path, because the library derives its places from the first word of the command line.
bool find_installation(char** argv)
{
    if (!find_program()) {
        std::fprintf(stderr, "tovik: cannot read /proc/self/exe, which names this program\n");
        return false;
    }
    if (std::strchr(argv[0], '/') == nullptr) {
        argv[0] = g_Program;
        execv(g_Program, argv);
        std::fprintf(stderr, "tovik: cannot execute %s\n", g_Program);
        return false;
    }
    const char* misread = misread_path(argv[0]);
    if (misread != nullptr) {
        std::fprintf(stderr,
            "tovik: the path %s holds a blank or a further \"/bin/\"; install it elsewhere\n",
            misread);
        return false;
    }
    if (!find_library()) {
        std::fprintf(stderr, "tovik: %s is not in a directory bin beside lib\n", g_Program);
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    set_up_process();
    const char* inspect = inspect_option(argc, argv);
    keep_secrets(inspect != nullptr);
    const bool print = has_word(argc, argv, "--print");
    if (has_answered_option(argc, argv, print)) {
        // The caller waits for an answer and gets none.
        return print ? kCannotStart : 0;
    }
    if (argc < 1 || !find_installation(argv)) {
        return kCannotStart;
    }
    avoid_blank_window(kNvidiaModuleFile);
    if (inspect != nullptr && !serve_inspector(inspect)) {
        return kCannotStart;
    }
    return print ? print_answer(argc, argv, run) : run(argc, argv);
}
