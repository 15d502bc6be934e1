#include "tools/EntryPoints.h"

#include <cstring>
#include <link.h>
#include <utility>
#include <vector>

namespace {

Dl_info module_of(const void* address)
{
    Dl_info module = {};
    dladdr(address, &module);
    return module;
}

/// A plug-in that is loaded.
struct LoadedPlugin {
    void* handle;
    const link_map* map;
    const void* tovikModule; // base address of Tovik's library
};

/// One set of entry points of a plug-in.
struct EntrySet {
    const char* title;
    const char* prefix;
    std::size_t found = 0;
    std::string missing = {}; // names, separated by commas
    std::vector<std::pair<std::string, std::string>> foreign = {}; // name, and the file it is in
};

EntrySet entry_set(const char* title, const char* prefix, const LoadedPlugin& plugin)
{
    EntrySet set = {title, prefix};
    for (const char* operation : kOperations) {
        const std::string name = prefix + std::string(operation);
        const void* symbol = dlsym(plugin.handle, name.c_str());
        const Dl_info module = module_of(symbol);
        if (symbol == nullptr || module.dli_fbase == plugin.tovikModule) {
            set.missing += (set.missing.empty() ? "" : ", ") + name;
            continue;
        }
        ++set.found;
        if (std::strcmp(module.dli_fname, plugin.map->l_name) != 0) {
            set.foreign.emplace_back(name, module.dli_fname);
        }
    }
    return set;
}

bool is_complete(const EntrySet& set)
{
    return set.missing.empty();
}

void report_foreign(const EntrySet& set, Report& report)
{
    for (const auto& [name, file] : set.foreign) {
        report.note(name, "comes from " + file);
    }
}

void report_on(const EntrySet& set, bool bound, const EntrySet& other, Report& report)
{
    if (is_complete(set) && bound) {
        report.ok(set.title, "complete; Tovik binds it");
    } else if (is_complete(set)) {
        report.note(set.title, "complete, but never used beside the newer set");
    } else if (set.found > 0) {
        report.wrong(set.title,
            "incomplete: " + set.missing + " missing"
                + (is_complete(other) ? std::string("; Tovik binds the ") + other.title : ""));
    }
}

bool is_symbolic(const link_map& plugin)
{
    for (const ElfW(Dyn)* entry = plugin.l_ld; entry->d_tag != DT_NULL; ++entry) {
        if (entry->d_tag == DT_SYMBOLIC
            || (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_SYMBOLIC) != 0)) {
            return true;
        }
    }
    return false;
}

void report_on_linking(const LoadedPlugin& plugin, Report& report)
{
    if (module_of(dlsym(plugin.handle, "P_Available")).dli_fbase == plugin.tovikModule) {
        report.wrong("linked",
            "is linked to Tovik's library, whose functions of the older "
            "set count as missing here; leave that library out");
    }
    if (!is_symbolic(*plugin.map)) {
        report.note("link", "without -Wl,-Bsymbolic a call of its own may end in another library");
    }
}

void report_on_sets(const EntrySet& newer, const EntrySet& older, Report& report)
{
    report_foreign(newer, report);
    report_foreign(older, report);
    report_on(newer, true, older, report);
    report_on(older, !is_complete(newer), newer, report);
}

} // namespace

const char* examine_entry_points(
    const std::string& path, const void* libraryFunction, Report& report)
{
    const OwnedLibrary library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    link_map* map = nullptr;
    if (!library || dlinfo(library.get(), RTLD_DI_LINKMAP, static_cast<void*>(&map)) != 0) {
        report.wrong("load", dlerror());
        return nullptr;
    }
    const LoadedPlugin plugin = {library.get(), map, module_of(libraryFunction).dli_fbase};
    const EntrySet newer = entry_set("newer set", "Plg", plugin);
    const EntrySet older = entry_set("older set", "P_", plugin);
    report_on_sets(newer, older, report);
    report_on_linking(plugin, report);
    if (!is_complete(newer) && !is_complete(older)) {
        report.wrong("entry points",
            "neither set is complete (newer: " + newer.missing + " missing; older: " + older.missing
                + " missing); Tovik binds neither");
        return nullptr;
    }
    return is_complete(newer) ? newer.prefix : older.prefix;
}
