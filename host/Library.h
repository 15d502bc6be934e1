// Library.h: the loaded library, and its functions and those of its dependencies by name.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

/// Exit status when the library cannot be loaded, or not from this place.
constexpr int kCannotStart = 2;

/// The library that this process has loaded.
struct Library {
    /// From dlopen().
    void* handle;
    /// The file's path.
    const char* path;
};

/// The function of this name in the library or in one that it links to, for instance
/// `function_of<int(int, char**)>(library, "Main")`. Ends the process with kCannotStart when there
/// is none.
template <typename Function> Function* function_of(const Library& library, const char* name)
{
    void* symbol = dlsym(library.handle, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "tovik: %s has no function %s\n", library.path, name);
        std::exit(kCannotStart);
    }
    return reinterpret_cast<Function*>(symbol);
}

/// Connects a handler, of whatever parameters, to a signal of a GObject; `data` is its last
/// argument and outlives the object.
template <typename Handler>
void connect_signal(
    const Library& library, void* object, const char* signal, Handler* handler, void* data)
{
    using Connect
        = unsigned long(void*, const char*, void (*)(), void*, void (*)(void*, void*), int);
    function_of<Connect>(library, "g_signal_connect_data")(
        object, signal, reinterpret_cast<void (*)()>(handler), data, nullptr, 0);
}
