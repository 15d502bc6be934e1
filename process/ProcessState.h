// ProcessState.h: the process-wide variables of this room. They are null or 0 before Main runs, which
// it never does in the web process.
#pragma once

#include <cstdint>

extern int g_ARGC; // Main: number of the process arguments
extern char** g_ARGV; // Main: the process arguments themselves, owned by the caller
extern std::uint32_t g_Verbose; // wa_verbose: 0 not yet known, 1 tracing on, 2 tracing off
