#include "tools/EntryPoints.h"

#include <cstring>
#include <link.h>

namespace {

Dl_info module_of(const void* address)
{
    Dl_info module = {};
    dladdr(address, &module);
    return module;
}

/// One set of entry points, in words.
struct EntrySet {
    const char* title;
    const char* prefix;
    std::size_t found = 0;
    std::string missing = {};
};

void look_up(
    EntrySet& set, void* library, const link_map& plugin, const void* ownModule, Report& report)
{
    for (const char* operation : kOperations) {
        const std::string name = set.prefix + std::string(operation);
        const void* symbol = dlsym(library, name.c_str());
        const Dl_info module = module_of(symbol);
        if (symbol == nullptr || module.dli_fbase == ownModule) {
            set.missing += (set.missing.empty() ? "" : ", ") + name;
            continue;
        }
        ++set.found;
        if (std::strcmp(module.dli_fname, plugin.l_name) != 0) {
            report.note(name, std::string("comes from ") + module.dli_fname);
        }
    }
}

bool is_complete(const EntrySet& set)
{
    return set.missing.empty();
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

} // namespace

const char* examine_entry_points(
    const std::string& path, const void* libraryFunction, Report& report)
{
    const OwnedLibrary library(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    link_map* plugin = nullptr;
    if (!library || dlinfo(library.get(), RTLD_DI_LINKMAP, static_cast<void*>(&plugin)) != 0) {
        report.wrong("load", dlerror());
        return nullptr;
    }
    const void* ownModule = module_of(libraryFunction).dli_fbase;
    EntrySet newer = {"newer set", "Plg"};
    EntrySet older = {"older set", "P_"};
    look_up(newer, library.get(), *plugin, ownModule, report);
    look_up(older, library.get(), *plugin, ownModule, report);
    report_on(newer, true, older, report);
    report_on(older, !is_complete(newer), newer, report);

    if (module_of(dlsym(library.get(), "P_Available")).dli_fbase == ownModule) {
        report.wrong("linked",
            "is linked to Tovik's library, whose functions of the older "
            "set count as missing here; leave that library out");
    }
    if (!is_symbolic(*plugin)) {
        report.note("link", "without -Wl,-Bsymbolic a call of its own may end in another library");
    }
    if (!is_complete(newer) && !is_complete(older)) {
        report.wrong("entry points",
            "neither set is complete (newer: " + newer.missing + " missing; older: " + older.missing
                + " missing); Tovik binds neither");
        return nullptr;
    }
    return is_complete(newer) ? newer.prefix : older.prefix;
}
