// EntryPoints.h: which entry points a plug-in has, looked up as Tovik's library does it.
#pragma once

#include "tools/Report.h"
#include "util/Owned.h"

#include <dlfcn.h>
#include <string>

/// A library that this process has open.
using OwnedLibrary = std::unique_ptr<void, ReleaseWith<dlclose>>;

inline constexpr const char* kOperations[]
    = {"Initialize", "Finalize", "SetProperty", "GetProperty", "EnumProperty", "Invoke"};

/// Reports on both sets of the plug-in at `path`, which the process can load, and on how it is
/// linked. Returns the prefix of the set that Tovik binds, "Plg" or "P_", or null when neither is
/// complete.
/// libraryFunction  address of a function of Tovik's library, whose functions count as missing in a
///                  plug-in
const char* examine_entry_points(
    const std::string& path, const void* libraryFunction, Report& report);
