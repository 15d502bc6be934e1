// StartMarks.cpp: a library that LD_PRELOAD puts before all others. It writes the time on the
// monotonic clock, in nanoseconds, of what every program with a page does on its way, to the file
// that BENCH_MARKS names, one "NAME TIME" a line.
#include "util/Export.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace {

void mark(const char* name)
{
    const char* file = std::getenv("BENCH_MARKS");
    if (file == nullptr) {
        return;
    }
    const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
    const int descriptor = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    dprintf(descriptor, "%s %lld\n", name, static_cast<long long>(now.count()));
    close(descriptor);
}

/// The function that this library hides.
template <typename Function> Function* following(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// The same for GTK, which does not follow this library where the program has opened it later.
template <typename Function> Function* of_gtk(const char* name)
{
    void* gtk
        = following<void*(const char*, int)>("dlopen")("libgtk-3.so.0", RTLD_LAZY | RTLD_NOLOAD);
    return reinterpret_cast<Function*>(dlsym(gtk, name));
}

/// Runs in every process of WebKit; only that of the page counts.
__attribute__((constructor)) void mark_web_process()
{
    if (std::strcmp(program_invocation_short_name, "WebKitWebProcess") == 0) {
        mark("web-process");
    }
}

} // namespace

// The program is loaded when a window that links to GTK asks for its first function, and when the
// host has opened its library. GTK is ready when it returns to either; the host has asked it once
// before, in a way that this library does not see.
extern "C" {

TOVIK_EXPORT void* dlopen(const char* file, int mode) noexcept
{
    void* handle = following<void*(const char*, int)>("dlopen")(file, mode);
    if (file != nullptr && std::string_view(file).ends_with("/libtovikgui.so")) {
        mark("loaded");
    }
    return handle;
}

TOVIK_EXPORT void gtk_init(int* count, char*** words) noexcept
{
    mark("loaded");
    following<void(int*, char***)>("gtk_init")(count, words);
    mark("ready");
}

TOVIK_EXPORT int gtk_init_check(int* count, char*** words) noexcept
{
    const int displayed = of_gtk<int(int*, char***)>("gtk_init_check")(count, words);
    mark("ready");
    return displayed;
}

TOVIK_EXPORT void gtk_main() noexcept
{
    mark("window");
    of_gtk<void()>("gtk_main")();
}

TOVIK_EXPORT void gtk_main_quit() noexcept
{
    mark("answer");
    of_gtk<void()>("gtk_main_quit")();
}
}
