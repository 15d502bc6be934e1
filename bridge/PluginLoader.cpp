#include "bridge/PluginLoader.h"

#include "plugin/plugin.h"
#include "process/ProcessArguments.h"
#include "process/Trace.h"
#include "util/Layout.h"
#include "util/StringUtil.h"

namespace {

constexpr std::size_t kLongestPath = kPathCapacity - 1;

/// Handle of the loaded plug-in; wa_LoadPlugin and wa_FreePlugin write it.
constinit void* g_Plugin = nullptr;

/// Empty texts where there is no such path.
struct PluginPaths {
    char library[kPathCapacity] = "";
    char globalConfig[kPathCapacity] = "";
    char localConfig[kPathCapacity] = "";
};

/// Value of a process option; the empty string when it is absent.
const char* option_value(const char* name)
{
    const char* value = nullptr;
    return wa_get_argument(name, &value) == 0 ? "" : value;
}

/// Copies a path that fits; a longer one is left out.
void copy_path(char* buffer, const char* path)
{
    if (tovik::_strlen(path) <= kLongestPath) {
        tovik::_strcpy(buffer, path);
    }
}

/// Makes directory + prefix + brand + suffix in `buffer`, empty unless that file exists.
void find_brand_file(char* buffer, const char* directory, const char* prefix, const char* suffix)
{
    char brand[8];
    if (!osGetBrandName(brand, sizeof brand)) {
        return;
    }
    tovik::_strcat(tovik::_strcpy(buffer, directory), prefix);
    tovik::_strcat(tovik::_strcat(buffer, brand), suffix);
    if (!osFileExist(buffer)) {
        *buffer = 0;
    }
}

/// Looks for the plug-in library and its configuration file in the directory of "-root".
void find_plugin_under_root(PluginPaths& paths, const char* root)
{
    const std::size_t length = tovik::_strlen(root);
    if (length == 0 || length + 15 > kLongestPath) {
        return;
    }
    char directory[kPathCapacity];
    tovik::_strcpy(directory, root);
    if (directory[length - 1] != '/') {
        tovik::_strcat(directory, "/");
    }
    find_brand_file(paths.globalConfig, directory, "", ".conf");
    find_brand_file(paths.library, directory, "lib", ".so");
}

PluginPaths find_plugin()
{
    PluginPaths paths;
    copy_path(paths.localConfig, option_value("-config"));
    const char* library = option_value("-plugin");
    if (*library != 0) {
        copy_path(paths.library, library);
    } else {
        find_plugin_under_root(paths, option_value("-root"));
    }
    if (paths.library[0] == 0 && !osGetLibrary(paths.library, sizeof paths.library)) {
        paths.library[0] = 0;
    }
    return paths;
}

const char* null_if_empty(const char* text)
{
    return tovik::_strlen(text) == 0 ? nullptr : text;
}

} // namespace

void* wa_GetPlugin()
{
    if (g_Plugin != nullptr) {
        return g_Plugin;
    }
    const PluginPaths paths = find_plugin();
    wa_trace("Library:", paths.library);
    wa_trace("Config global:", paths.globalConfig);
    wa_trace("Config local:", paths.localConfig);
    return wa_LoadPlugin(paths.library, paths.globalConfig, paths.localConfig);
}

void* wa_LoadPlugin(const char* library, const char* globalConfig, const char* localConfig)
{
    if (g_Plugin != nullptr) {
        return g_Plugin;
    }
    if (P_Available(library) == nullptr) {
        wa_trace("Plugin missing:", plugin_failure());
        return nullptr;
    }
    g_Plugin
        = P_Initialize(nullptr, null_if_empty(globalConfig), null_if_empty(localConfig), nullptr);
    wa_trace("Plugin available:", g_Plugin == nullptr ? "NO" : "YES");
    return g_Plugin;
}

void wa_FreePlugin()
{
    if (g_Plugin != nullptr) {
        P_Finalize(g_Plugin);
        g_Plugin = nullptr;
    }
}
