#include "tools/LibraryFunctions.h"

#include "bridge/WebBridge.h"

#include <dlfcn.h>

namespace {

/// Written by read_values_from().
constinit const LibraryFunctions* g_Library = nullptr;
constinit void* g_Plugin = nullptr;

template <typename Function> bool bind(void* library, const char* name, Function*& function)
{
    function = reinterpret_cast<Function*>(dlsym(library, name));
    return function != nullptr;
}

} // namespace

std::string load_library_functions(const std::string& path, LibraryFunctions& functions)
{
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const bool bound = library != nullptr && bind(library, "P_Available", functions.available)
        && bind(library, "P_Initialize", functions.initialize)
        && bind(library, "P_Finalize", functions.finalize)
        && bind(library, "P_SetProperty", functions.setProperty)
        && bind(library, "P_GetProperty", functions.getProperty)
        && bind(library, "P_EnumProperty", functions.enumProperty)
        && bind(library, "P_Invoke", functions.invoke);
    return bound ? "" : dlerror();
}

void read_values_from(const LibraryFunctions& functions, void* plugin)
{
    g_Library = &functions;
    g_Plugin = plugin;
}

// The two functions that bridge/PluginValues.cpp asks for properties.

void* wa_GetPlugin()
{
    return g_Plugin;
}

const char* P_GetProperty(void* plugin, const char* name) noexcept
{
    return g_Library->getProperty(plugin, name);
}
