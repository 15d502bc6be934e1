// The executable `tovik`: finds the library of this installation, loads it and hands it the
// command line. It links to nothing but the C library, so that a start pays for GTK and WebKit
// once, in the library.
#include "host/Answer.h"
#include "host/Graphics.h"
#include "host/Texts.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string_view>
#include <unistd.h>

namespace {

constexpr int kCannotStart = 2;
constexpr int kNoDisplay = 3;

/// Path of this executable, links resolved; false when the system does not tell.
bool own_path(char (&path)[PATH_MAX])
{
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0) {
        return false;
    }
    path[length] = 0;
    return true;
}

/// Turns the path /.../bin/NAME of this program into that of its library,
/// /.../lib/libNAMEgui.so: a product of another brand has both under its own name.
bool library_path(char (&path)[PATH_MAX])
{
    const std::string_view program = path;
    const std::size_t name = program.rfind('/') + 1;
    const std::size_t directory = name < 2 ? 0 : program.rfind('/', name - 2);
    if (name < 2 || directory == std::string_view::npos) {
        return false;
    }
    char library[PATH_MAX];
    const int length = std::snprintf(library, sizeof library, "%.*s/lib/lib%sgui.so",
        static_cast<int>(directory), path, path + name);
    if (length >= PATH_MAX) {
        return false;
    }
    std::memcpy(path, library, sizeof library);
    return true;
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

/// Function of the library or of one that it links to; ends the process when there is none.
template <typename Function>
Function* function_of(void* library, const char* path, const char* name)
{
    void* symbol = dlsym(library, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "tovik: %s has no function %s\n", path, name);
        std::exit(kCannotStart);
    }
    return reinterpret_cast<Function*>(symbol);
}

/// Path of the library; set before anything runs.
constinit char g_Library[PATH_MAX] = "";

/// Loads the library, checks that there is a display, and runs.
int run(int argc, char** argv)
{
    const char* path = g_Library;
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const char* reason = dlerror();
        std::fprintf(
            stderr, "tovik: cannot load %s: %s%s\n", path, reason, missing_package(reason));
        return kCannotStart;
    }
    // The library shows no window without a display and says nothing about it; GTK does.
    if (function_of<int(int*, char***)>(library, path, "gtk_init_check")(nullptr, nullptr) == 0) {
        std::fprintf(stderr, "tovik: cannot open a display; set DISPLAY or WAYLAND_DISPLAY\n");
        return kNoDisplay;
    }
    return function_of<int(int, char**)>(library, path, "Main")(argc, argv);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kHelp, stdout);
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::fputs(kVersion, stdout);
        return 0;
    }
    char* path = g_Library;
    if (!own_path(g_Library)) {
        std::fprintf(stderr, "tovik: cannot read /proc/self/exe, which names this program\n");
        return kCannotStart;
    }
    // The library derives the program's place from the first word of the command line, and a
    // bare name has none.
    if (argc > 0 && std::strchr(argv[0], '/') == nullptr) {
        argv[0] = path;
        execv(path, argv);
        std::fprintf(stderr, "tovik: cannot execute %s\n", path);
        return kCannotStart;
    }
    if (!library_path(g_Library)) {
        std::fprintf(stderr, "tovik: %s is not in a directory bin beside lib\n", path);
        return kCannotStart;
    }
    avoid_blank_window(kNvidiaModuleFile);
    return take_print_option(argc, argv) ? print_answer(argc, argv, run) : run(argc, argv);
}
