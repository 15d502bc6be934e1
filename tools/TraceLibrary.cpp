// The tracing library: a plug-in that forwards every call to the one that its file names, and shows
// the call on standard error. Compiled once for each generation of entry points.
#include "tools/PendingCall.h"
#include "tools/TraceFile.h"
#include "tools/WatchedPlugin.h"

#include <cstdio>
#include <dlfcn.h>
#include <filesystem>
#include <memory>
#include <tovik/plugin.h>
#include <unistd.h>

namespace {

/// Which process this is, before each of its lines.
std::string prefix()
{
    std::error_code failure;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", failure);
    const bool web = program.filename() == "WebKitWebProcess";
    return std::string("tovik-plugin-trace: ") + (web ? "web" : "user-interface") + " process "
        + std::to_string(getpid()) + ": ";
}

void show(const std::string& line)
{
    std::fputs((line + '\n').c_str(), stderr);
}

/// The path that the file of this library names.
std::string plugin_path()
{
    Dl_info own = {};
    dladdr(reinterpret_cast<const void*>(&plugin_path), &own);
    return own.dli_fname == nullptr ? "" : traced_path(own.dli_fname);
}

class TracedPlugin final : public WatchedPlugin {
public:
    explicit TracedPlugin(const std::string& linePrefix)
        : WatchedPlugin([this](const std::string& call) { m_pending.begin(call); },
            [this, linePrefix](const std::string& line, bool) {
                m_pending.end();
                show(linePrefix + line);
            })
        , m_pending([linePrefix](const std::string& line) { show(linePrefix + line); }, linePrefix)
    {
    }

    /// The host sets the WorkingDirectory of the tracing library, which is forwarded; the plug-in's
    /// own would be another one.
    void SetRoot(const char* /*path*/) override { }

private:
    PendingCall m_pending;
};

/// Loads the plug-in, with a line when that fails; null then, or when it does not initialise.
void* open_plugin(const char* text, const char* globalConfig, const char* localConfig,
    void (*callback)(const char*, unsigned long))
{
    const std::string linePrefix = prefix();
    const std::string path = plugin_path();
    if (path.empty()) {
        show(linePrefix + "WRONG file: names no plug-in; make it with tovik-plugin-trace");
        return nullptr;
    }
    auto plugin = std::make_unique<TracedPlugin>(linePrefix);
    if (plugin->Available(path.c_str()) == nullptr) {
        const char* reason = plugin->MissingEntry() == nullptr ? dlerror() : plugin->MissingEntry();
        show(linePrefix + "WRONG load: " + (reason == nullptr ? path : reason));
        return nullptr;
    }
    if (!plugin->Initialize(text, globalConfig, localConfig, callback)) {
        return nullptr;
    }
    return plugin.release();
}

WatchedPlugin& plugin_of(void* instance)
{
    return *static_cast<TracedPlugin*>(instance);
}

} // namespace

#ifdef OLDER_SET
#define ENTRY(name) P_##name

void* P_Initialize(const char* text, const char* globalConfig, const char* localConfig,
    void (*callback)(const char*, unsigned long))
{
    return open_plugin(text, globalConfig, localConfig, callback);
}
#else
#define ENTRY(name) Plg##name

void* PlgInitialize(void*, void*, void*, void*, void** instance)
{
    *instance = open_plugin(nullptr, nullptr, nullptr, nullptr);
    return *instance;
}
#endif

void ENTRY(Finalize)(void* instance)
{
    const std::unique_ptr<TracedPlugin> plugin(static_cast<TracedPlugin*>(instance));
    plugin->Finalize();
}

void ENTRY(SetProperty)(void* instance, const char* name, const char* value)
{
    plugin_of(instance).SetProperty(name, value);
}

const char* ENTRY(GetProperty)(void* instance, const char* name)
{
    return plugin_of(instance).GetProperty(name);
}

const char* ENTRY(EnumProperty)(void* instance, const char* first, const char* second)
{
    return plugin_of(instance).EnumProperty(first, second);
}

unsigned long ENTRY(Invoke)(void* instance, const char* name)
{
    return plugin_of(instance).Invoke(name);
}
