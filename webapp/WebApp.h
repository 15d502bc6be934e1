// WebApp.h: the entry points that a host executable calls.
#pragma once

#include "util/Export.h"

extern "C" {

/// Runs Main() with a command line in one text, which alloc_argument_list() splits. Ignores the
/// first two arguments. Returns the result of Main(), or 0 when memory runs out.
TOVIK_EXPORT int EntryAdmin(void* first, void* second, const char* commandLine) noexcept;

/// Runs the user-interface process: shows the window that the options ask for, runs the main loop
/// until the page or the user ends it, and writes the result file. The first argument is the path
/// of the program. The caller owns the arguments, which must outlive the call. To be called once
/// per process. After the return, neither the window nor its page ends a main loop of the caller.
/// Always 0: the outcome is in the result file.
TOVIK_EXPORT int Main(int argc, char** argv) noexcept;
}
