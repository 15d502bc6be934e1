#include "plugin/plugin.h"

#include "plugin/WrapperPlugin.h"

#include <cstdlib>
#include <dlfcn.h>

namespace {

/// The plug-in of the process. Its destructor finalises one that finalize_at_exit() has not.
constinit CWrapperPlugin g_Plugin;

void finalize_at_exit() noexcept
{
    g_Plugin.Finalize();
}

} // namespace

const char* plugin_failure() noexcept
{
    const char* missing = g_Plugin.MissingEntry();
    return missing == nullptr ? dlerror() : missing;
}

void* P_Available(const char* path) noexcept
{
    return g_Plugin.Available(path);
}

void* P_Initialize(const char* text, const char* globalConfig, const char* localConfig,
    void (*callback)(const char*, unsigned long)) noexcept
{
    if (!g_Plugin.Initialize(text, globalConfig, localConfig, callback)) {
        return nullptr;
    }
    // Functions registered last run first. A library that is loaded again registers its static
    // objects again, so each success registers too: the plug-in is finalised while they exist.
    static_cast<void>(std::atexit(finalize_at_exit));
    return &g_Plugin;
}

void P_Finalize(void* plugin) noexcept
{
    if (plugin == &g_Plugin) {
        g_Plugin.Finalize();
    }
}

void P_SetProperty(void* plugin, const char* name, const char* value) noexcept
{
    if (plugin == &g_Plugin) {
        g_Plugin.SetProperty(name, value);
    }
}

const char* P_GetProperty(void* plugin, const char* name) noexcept
{
    return plugin == &g_Plugin ? g_Plugin.GetProperty(name) : nullptr;
}

const char* P_EnumProperty(void* plugin, const char* first, const char* second) noexcept
{
    return plugin == &g_Plugin ? g_Plugin.EnumProperty(first, second) : nullptr;
}

unsigned long P_Invoke(void* plugin, const char* name) noexcept
{
    return plugin == &g_Plugin ? g_Plugin.Invoke(name) : CWrapperPlugin::kFunctionFailed;
}
