// EntryPoints.h: which entry points a plug-in library has, looked up as the library does it.
#pragma once

#include "tools/Report.h"
#include "util/Owned.h"

#include <dlfcn.h>
#include <string>

/// A library that this process has open.
using OwnedLibrary = std::unique_ptr<void, ReleaseWith<dlclose>>;

inline constexpr const char* kOperations[]
    = {"Initialize", "Finalize", "SetProperty", "GetProperty", "EnumProperty", "Invoke"};

/// Reports on both sets of the library at `path`, which the process can load. Returns the prefix
/// of the set that the library binds, "Plg" or "P_", or null when neither is complete.
/// libraryFunction  address of a function of the library, whose functions count as missing in a
///                  plug-in
const char* examine_entry_points(
    const std::string& path, const void* libraryFunction, Report& report);
