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
