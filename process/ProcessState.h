// ProcessState.h: the process-wide variables of this room, each with its writer. Main sets its own
// back at the end. In the web process, where Main never runs, there are no arguments.
#pragma once

#include <cstdint>

extern int g_ARGC; // Main: number of the process arguments
extern char** g_ARGV; // Main: the process arguments themselves, owned by the caller
extern std::uint32_t g_Verbose; // wa_verbose: 0 not yet known, 1 tracing on, 2 tracing off
