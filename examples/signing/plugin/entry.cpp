// The entry points: each text may be null, and no exception leaves them.
#include "SigningPlugin.h"

#include <new>
#include <tovik/plugin.h>

namespace {

SigningPlugin& plugin_of(void* instance)
{
    return *static_cast<SigningPlugin*>(instance);
}

/// Not a std::string: a copy of a PIN would stay in memory.
std::string_view text_or_empty(const char* text)
{
    return text == nullptr ? "" : text;
}

/// What `work` returns, or `failed` when it throws.
template <typename Work, typename Result> Result guarded(Result failed, const Work& work)
{
    try {
        return work();
    } catch (const std::exception&) {
        return failed;
    }
}

} // namespace

void* PlgInitialize(void*, void*, void*, void*, void** instance)
{
    *instance = new (std::nothrow) SigningPlugin;
    return *instance;
}

void PlgFinalize(void* instance)
{
    delete &plugin_of(instance);
}

void PlgSetProperty(void* instance, const char* name, const char* value)
{
    guarded(false, [=] {
        plugin_of(instance).set_property(text_or_empty(name), text_or_empty(value));
        return true;
    });
}

const char* PlgGetProperty(void* instance, const char* name)
{
    return guarded(static_cast<const char*>(nullptr),
        [=] { return plugin_of(instance).property(text_or_empty(name)); });
}

const char* PlgEnumProperty(void* instance, const char* first, const char* second)
{
    return guarded(static_cast<const char*>(nullptr),
        [=] { return plugin_of(instance).list(text_or_empty(first), text_or_empty(second)); });
}

unsigned long PlgInvoke(void* instance, const char* name)
{
    return guarded(
        TOVIK_FUNCTION_FAILED, [=] { return plugin_of(instance).invoke(text_or_empty(name)); });
}
