#include "webapp/ProcessArguments.h"

#include "util/Arguments.h"
#include "webapp/ShellState.h"

int wa_get_argument(const char* name, const char** value)
{
    return get_argument(g_ARGC, g_ARGV, name, value);
}
