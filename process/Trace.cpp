#include "process/Trace.h"

#include "process/ProcessState.h"
#include "util/Utility.h"

#include <cstdio>

namespace {

const char* text_or_empty(const char* text)
{
    return text == nullptr ? "" : text;
}

} // namespace

int wa_verbose()
{
    if (g_Verbose == 0) {
        g_Verbose = has_argument(g_ARGC, g_ARGV, "-verbose") != 0 ? 1 : 2;
    }
    return g_Verbose == 1 ? 1 : 0;
}

void wa_trace(const char* label, const char* text)
{
    if (wa_verbose() != 0 && (label != nullptr || text != nullptr)) {
        std::printf("App - %s %s\n", text_or_empty(label), text_or_empty(text));
    }
}

void wa_trace(const char* label, std::uint32_t value)
{
    if (wa_verbose() != 0) {
        std::printf("App - %s 0x%.8X\n", text_or_empty(label), value);
    }
}

void wa_trace(const char* label)
{
    wa_trace(label, static_cast<const char*>(nullptr));
}
