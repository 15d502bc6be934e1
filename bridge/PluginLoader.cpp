#include "bridge/PluginLoader.h"

#include "plugin/plugin.h"
#include "process/ProcessArguments.h"
#include "process/Trace.h"
#include "util/StringUtil.h"
#include "util/Utility.h"

namespace {

/// Characters that a directory leaves free for a "/" and the name of the plug-in library.
constexpr std::size_t kRootRoom = sizeof "/" - 1 + kLibraryNameRoom;

/// Handle of the loaded plug-in; wa_LoadPlugin and wa_FreePlugin write it.
constinit void* g_Plugin = nullptr;

using PathBuffer = char[kPathCapacity];

/// The paths of a plug-in; each is empty when it was not found.
struct PluginPaths {
    PathBuffer library = "";
    PathBuffer globalConfig = "";
    PathBuffer localConfig = "";
};

/// Value of a process option; the empty string when it is absent.
const char* option_value(const char* name)
{
    const char* value = nullptr;
    return wa_get_argument(name, &value) == 0 ? "" : value;
}

/// Stores directory + prefix + brand + suffix in `buffer`, or nothing when no such file exists.
void find_brand_file(
    PathBuffer& buffer, const char* directory, const char* prefix, const char* suffix)
{
    char brand[kBrandCapacity];
    if (!osGetBrandName(brand, sizeof brand)) {
        return;
    }
    BoundedPath path(buffer);
    if (!path.append(directory).append(prefix).append(brand).append(suffix).exists()) {
        *buffer = 0;
    }
}

/// Looks for the plug-in library and its configuration file in the directory of "-root".
void find_plugin_under_root(PluginPaths& paths, const char* root)
{
    const std::size_t length = tovik::_strlen(root);
    if (length == 0 || length + kRootRoom >= kPathCapacity) {
        return;
    }
    PathBuffer directory;
    BoundedPath(directory).append(root).append(root[length - 1] == '/' ? "" : "/");
    find_brand_file(paths.globalConfig, directory, "", ".conf");
    find_brand_file(paths.library, directory, "lib", ".so");
}

PluginPaths find_plugin()
{
    PluginPaths paths;
    // A value that does not fit leaves the path empty.
    BoundedPath(paths.localConfig).append(option_value("-config"));
    const char* library = option_value("-plugin");
    if (*library != 0) {
        BoundedPath(paths.library).append(library);
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
