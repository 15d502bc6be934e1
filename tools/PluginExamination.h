// PluginExamination.h: calls a plug-in as the library does, and then with hostile texts.
#pragma once

#include "tools/Child.h"
#include "tools/LibraryFunctions.h"

/// Reports on the plug-in at `path`, which is canonical. Runs the plug-in's code in this process.
void examine_plugin(const LibraryFunctions& functions, const std::string& path,
    ChildProgress& progress, Report& report);
