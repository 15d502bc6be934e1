#include "plugin/plugin.h"

#include "plugin/WrapperPlugin.h"

namespace {

/// The process's plug-in; a plug-in still loaded at exit or unload is finalised by its destructor.
constinit CWrapperPlugin g_Plugin;

} // namespace

void* P_Available(const char* path) noexcept
{
    return g_Plugin.Available(path);
}

void* P_Initialize(const char* text, const char* globalConfig, const char* localConfig,
    void (*callback)(const char*, unsigned long)) noexcept
{
    return g_Plugin.Initialize(text, globalConfig, localConfig, callback) ? &g_Plugin : nullptr;
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
