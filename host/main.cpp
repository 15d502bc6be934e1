// The executable `tovik`: finds the library of this installation, loads it and hands it the
// command line. It links to nothing but the C library, so that a start pays for GTK and WebKit
// once, in the library.
#include "host/Answer.h"
#include "host/Engine.h"
#include "host/Graphics.h"
#include "host/ProductLayout.h"
#include "host/Texts.h"

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

constexpr int kNoDisplay = 3;

/// Gives the process what a run relies on, whatever its caller has left of it.
void set_up_process()
{
    // Nothing that is opened later becomes a standard stream. Used, these fail as closed ones do.
    for (int stream = 0; stream < 3; ++stream) {
        if (fcntl(stream, F_GETFD) < 0) {
            open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
        }
    }
    // Ignored, the end of a script would not be seen.
    std::signal(SIGCHLD, SIG_DFL);
    // The lines of a trace are read while the dialog runs, and survive a signal.
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

/// Stores the path of this executable, links resolved; false when the system does not tell.
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

/// The path from which the library would derive another directory than that of this program, or
/// null: it reads the first word of the command line up to a blank, and the first "/bin/" of the
/// program's path becomes "/lib/".
const char* misread_path(const char* firstWord)
{
    if (std::strchr(firstWord, ' ') != nullptr) {
        return firstWord;
    }
    const char* bin = std::strstr(g_Program, "/bin/");
    return bin != nullptr && bin + 4 != std::strrchr(g_Program, '/') ? g_Program : nullptr;
}

/// The package that a Debian system lacks when the loader's text names one of its libraries.
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
    end_with(library, printing_process(argc, argv));
    return function_of<int(int, char**)>(library, "Main")(argc, argv);
}

/// Prints the text that an option asks for in place of a run, beside "--print" on standard error;
/// false when none does.
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

/// Finds this program and its library; false, with a line on standard error, when it cannot be
/// run from its place. Executes it by its path when it was started by a bare name, which tells
/// the library nothing about that place.
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
    const bool print = has_word(argc, argv, "--print");
    if (has_answered_option(argc, argv, print)) {
        // A caller that waits for an answer gets none.
        return print ? kCannotStart : 0;
    }
    if (argc < 1 || !find_installation(argv)) {
        return kCannotStart;
    }
    avoid_blank_window(kNvidiaModuleFile);
    return print ? print_answer(argc, argv, run) : run(argc, argv);
}
