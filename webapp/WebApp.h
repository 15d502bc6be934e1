// WebApp.h: the front door of the library: the entry points that a host executable calls.
#pragma once

#include "util/Export.h"

extern "C" {

/// Runs the user-interface process with a command line in one text, split as
/// alloc_argument_list() does. The first two arguments are ignored. Returns what Main() returns,
/// or 0 when memory runs out.
TOVIK_EXPORT int EntryAdmin(void* first, void* second, const char* commandLine) noexcept;

/// Runs the user-interface process: shows the window that the options ask for, runs the main loop
/// until the page or the user ends it, and writes the result file. The first argument is the
/// program's path. The arguments stay the caller's and are used as long as Main() runs; it runs
/// once per process. Once it has returned, neither the window nor its page ends a main loop of the
/// caller. Always 0: the outcome is in the result file.
TOVIK_EXPORT int Main(int argc, char** argv) noexcept;
}
