#include "tools/CallRecorder.h"

#include "bridge/WebBridge.h"
#include "plugin/plugin.h"

#include <dlfcn.h>
#include <link.h>
#include <utility>

CallRecorder g_CallRecorder;

namespace {

using Callback = void (*)(const char*, unsigned long);

std::string text_of(const char* text)
{
    return text == nullptr ? "" : text;
}

} // namespace

void record_place(const char* path, bool exists)
{
    g_CallRecorder.places += g_CallRecorder.places.empty() ? "looked at " : ", ";
    g_CallRecorder.places += path + std::string(exists ? " (there)" : " (not there)");
}

std::string places_looked_at()
{
    return std::exchange(g_CallRecorder.places, "");
}

extern "C" {

int __real_dladdr(const void* address, Dl_info* info);
void* __real_P_Available(const char* path);
void* __real_P_Initialize(const char*, const char*, const char*, Callback);

int __wrap_dladdr(const void* address, Dl_info* info)
{
    Dl_info own = {};
    const int found = __real_dladdr(address, info);
    if (found != 0 && __real_dladdr(&g_CallRecorder, &own) != 0
        && info->dli_fbase == own.dli_fbase) {
        info->dli_fname = g_CallRecorder.module.c_str();
    }
    return found;
}

void* __wrap_P_Available(const char* path)
{
    g_CallRecorder.plugin = text_of(path);
    if (!g_CallRecorder.loadsPlugin) {
        return &g_CallRecorder;
    }
    void* library = __real_P_Available(path);
    link_map* map = nullptr;
    if (library == nullptr) {
        g_CallRecorder.loadFailure = text_of(dlerror());
    } else if (dlinfo(library, RTLD_DI_LINKMAP, static_cast<void*>(&map)) == 0) {
        g_CallRecorder.loadedPlugin = map->l_name;
    }
    return library;
}

void* __wrap_P_Initialize(
    const char* text, const char* globalConfig, const char* localConfig, Callback callback)
{
    g_CallRecorder.globalConfig = text_of(globalConfig);
    g_CallRecorder.localConfig = text_of(localConfig);
    return g_CallRecorder.loadsPlugin
        ? __real_P_Initialize(text, globalConfig, localConfig, callback)
        : nullptr;
}

void __wrap_webkit_web_context_set_web_extensions_directory(
    WebKitWebContext*, const char* directory)
{
    g_CallRecorder.extensionDirectory = text_of(directory);
}
}
