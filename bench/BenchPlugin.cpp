// BenchPlugin.cpp: a plug-in that does next to nothing, so that only the calls to it are
// measured. "Text" is a property that keeps what is set; "Web:NAME" is the content of NAME.base64
// in the plug-in's directory; "Name" has a short fixed value. Whatever else is set is dropped.
#include "util/Export.h"

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

/// Status of every command; pages look at it to see that the plug-in is really there.
constexpr unsigned long kStatus = 7;

struct Plugin {
    std::string directory;
    std::string text;
    std::string page;
};

Plugin& plugin_of(void* instance)
{
    return *static_cast<Plugin*>(instance);
}

} // namespace

extern "C" {

TOVIK_EXPORT void* PlgInitialize(void*, void*, void*, void*, void** instance) noexcept
{
    *instance = std::make_unique<Plugin>().release();
    return *instance;
}

TOVIK_EXPORT void PlgFinalize(void* instance) noexcept
{
    const std::unique_ptr<Plugin> owner(&plugin_of(instance));
}

TOVIK_EXPORT void PlgSetProperty(void* instance, const char* name, const char* value) noexcept
{
    if (std::strcmp(name, "WorkingDirectory") == 0) {
        plugin_of(instance).directory = value;
    } else if (std::strcmp(name, "Text") == 0) {
        plugin_of(instance).text = value;
    }
}

TOVIK_EXPORT const char* PlgGetProperty(void* instance, const char* name) noexcept
{
    Plugin& plugin = plugin_of(instance);
    if (std::strcmp(name, "Name") == 0) {
        return "value";
    }
    if (std::strcmp(name, "Text") == 0) {
        return plugin.text.c_str();
    }
    if (std::strncmp(name, "Web:", 4) != 0) {
        return nullptr;
    }
    std::ifstream file(plugin.directory + (name + 4) + ".base64", std::ios::binary);
    plugin.page.assign(std::istreambuf_iterator<char>(file), {});
    return plugin.page.c_str();
}

TOVIK_EXPORT const char* PlgEnumProperty(void*, const char*, const char*) noexcept
{
    return "value";
}

TOVIK_EXPORT unsigned long PlgInvoke(void*, const char*) noexcept
{
    return kStatus;
}
}
