// Library.h: functions of the loaded library and of those that it links to, by name.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

constexpr int kCannotStart = 2;

struct Library {
    void* handle;
    const char* path;
};

/// Function of the library or of one that it links to; ends the process when there is none.
template <typename Function> Function* function_of(const Library& library, const char* name)
{
    void* symbol = dlsym(library.handle, name);
    if (symbol == nullptr) {
        std::fprintf(stderr, "tovik: %s has no function %s\n", library.path, name);
        std::exit(kCannotStart);
    }
    return reinterpret_cast<Function*>(symbol);
}
