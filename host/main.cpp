// The executable `tovik`: finds the library of this installation, loads it and hands it the
// command line. It links to nothing but the C library, so that a start pays for GTK and WebKit
// once, in the library.
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <unistd.h>

namespace {

constexpr int kCannotStart = 2;
constexpr int kNoDisplay = 3;

constexpr char kVersion[] = "tovik " TOVIK_VERSION "\n";

constexpr char kHelp[] = R"(Usage: tovik [OPTION]... [ANY://URL?QUERY]

Shows one page in a window and writes the page's answer to a file.

  -url PAGE        page to show: a file of the user interface, a URL, or res://PATH
                   for a page of the plug-in (default index.html)
  -root DIR/       where else files and plug-in are looked for; end it with "/". It must hold
                   this library too, or pages have no plug-in
  -store FILE      write the answer to FILE when the window is gone
  -title TEXT      window title
  -icon FILE       window icon, or "none"
  -size PAIR       0xWWWWHHHH, width and height in pixels, or percentages up to 100
  -position PAIR   0xXXXXYYYY, distance from the left and top edge, or with the top bit of
                   a half set from the right or bottom one
  -fullscreen      fill the work area
  -resizing        let the user resize the window
  -system          stay above other windows
  -useragent TEXT  user agent to present
  -wait MS         pause before the window is shown (default 3)
  -plugin FILE     plug-in library
  -config FILE     configuration file for the plug-in
  -verbose         trace to standard output
  --help           show this text
  --version        show the version

A value never begins with "-". The query of the first argument that holds "://" is passed on to
the page.

Exit status: 0 the window was shown and is gone, whatever the answer; 2 the library cannot be
loaded; 3 there is no display. The answer stands in FILE alone; CKR_CANCEL is a closed window.
)";

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

/// Replaces the last two parts of /.../bin/tovik to give the path of the library.
bool library_path(char (&path)[PATH_MAX])
{
    constexpr char kLibrary[] = "/lib/libtovikgui.so";
    for (int parts = 0; parts < 2; ++parts) {
        char* slash = std::strrchr(path, '/');
        if (slash == nullptr) {
            return false;
        }
        *slash = 0;
    }
    const std::size_t length = std::strlen(path);
    if (length + sizeof kLibrary > sizeof path) {
        return false;
    }
    std::memcpy(path + length, kLibrary, sizeof kLibrary);
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

/// Loads the library, checks that there is a display, and runs.
int run(const char* path, int argc, char** argv)
{
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
    char path[PATH_MAX];
    if (!own_path(path)) {
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
    if (!library_path(path)) {
        std::fprintf(stderr, "tovik: %s is not in a directory bin beside lib\n", path);
        return kCannotStart;
    }
    return run(path, argc, argv);
}
