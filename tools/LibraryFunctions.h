// LibraryFunctions.h: the plug-in interface that the library exports. The web process calls a
// plug-in through the same functions.
#pragma once

#include "plugin/plugin.h"

#include <string>

/// The exported functions, all of them bound.
struct LibraryFunctions {
    decltype(&::P_Available) available;
    decltype(&::P_Initialize) initialize;
    decltype(&::P_Finalize) finalize;
    decltype(&::P_SetProperty) setProperty;
    decltype(&::P_GetProperty) getProperty;
    decltype(&::P_EnumProperty) enumProperty;
    decltype(&::P_Invoke) invoke;
};

/// Loads the library at `path`, which stays in the process, and binds its functions. Returns the
/// empty string, or why that failed.
std::string load_library_functions(const std::string& path, LibraryFunctions& functions);

/// Sets the plug-in, and the functions that reach it, from which the readers of
/// bridge/PluginValues.h get their properties in this process. Both are used until the next call.
void read_values_from(const LibraryFunctions& functions, void* plugin);
