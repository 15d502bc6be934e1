// The entry points: thin, because each text may be null. An exception out of one of them ends the
// process; a plug-in that has something to save catches it here.
// DEMO_OLDER builds the older generation, for comparison; a new plug-in needs only the newer one.
#include "DemoPlugin.h"

#include <tovik/plugin.h>

namespace {

DemoPlugin& plugin_of(void* instance)
{
    return *static_cast<DemoPlugin*>(instance);
}

const char* text_or_empty(const char* text)
{
    return text == nullptr ? "" : text;
}

} // namespace

#ifdef DEMO_OLDER
#define ENTRY(name) P_##name

void* P_Initialize(const char*, const char*, const char*, void (*)(const char*, unsigned long))
{
    return new DemoPlugin;
}
#else
#define ENTRY(name) Plg##name

void* PlgInitialize(void*, void*, void*, void*, void** instance)
{
    *instance = new DemoPlugin;
    return *instance;
}
#endif

void ENTRY(Finalize)(void* instance)
{
    delete &plugin_of(instance);
}

void ENTRY(SetProperty)(void* instance, const char* name, const char* value)
{
    plugin_of(instance).set_property(text_or_empty(name), text_or_empty(value));
}

const char* ENTRY(GetProperty)(void* instance, const char* name)
{
    return plugin_of(instance).property(text_or_empty(name));
}

const char* ENTRY(EnumProperty)(void* instance, const char* first, const char* second)
{
    return plugin_of(instance).next_property(text_or_empty(first), text_or_empty(second));
}

unsigned long ENTRY(Invoke)(void* instance, const char* name)
{
    return plugin_of(instance).invoke(text_or_empty(name));
}
