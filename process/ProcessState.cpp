#include "process/ProcessState.h"

constinit int g_ARGC = 0;
constinit char** g_ARGV = nullptr;
constinit std::uint32_t g_Verbose = 0;
