#include "process/ProcessArguments.h"

#include "process/ProcessState.h"
#include "util/Utility.h"

int wa_get_argument(const char* name, const char** value)
{
    return get_argument(g_ARGC, g_ARGV, name, value);
}
