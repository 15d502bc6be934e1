// Examines the files of the installation, which the library's own searches find.
#include "bridge/WebBridge.h"
#include "process/ProcessArguments.h"
#include "tools/CallRecorder.h"
#include "tools/Doctor.h"
#include "tools/ElfFile.h"
#include "tools/PageLinks.h"
#include "util/Utility.h"

#include <filesystem>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// An extension directory with this many other libraries is not the product's own.
constexpr std::size_t kManyLibraries = 10;

std::string brand_name()
{
    char brand[kBrandCapacity];
    return osGetBrandName(brand, sizeof brand) ? brand : "";
}

bool is_same_file(const fs::path& one, const fs::path& other)
{
    std::error_code none;
    return fs::equivalent(one, other, none);
}

std::vector<fs::path> files_in(const fs::path& directory)
{
    std::error_code none;
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(directory, none)) {
        files.push_back(entry.path());
    }
    return files;
}

bool is_so(const fs::path& file)
{
    return file.native().ends_with(".so");
}

/// Names of the files beside `module` that have its name and a version, separated by commas.
std::string versioned_names(const fs::path& module)
{
    std::string names;
    for (const fs::path& file : files_in(module.parent_path())) {
        if (file.native().starts_with(module.native() + ".")) {
            names += (names.empty() ? "" : ", ") + file.filename().native();
        }
    }
    return names;
}

void examine_library(Report& report)
{
    const std::string& module = g_CallRecorder.module;
    if (!is_there(module)) {
        const std::string versioned = versioned_names(module);
        report.wrong("library",
            versioned.empty() ? "there is no " + module + "; install it"
                              : "only under a versioned name, " + versioned + "; make a link "
                    + module + " to it");
        return;
    }
    const std::string fault = elf_fault(module);
    if (!fault.empty()) {
        report.wrong("library", module + " " + fault + "; install it again");
        return;
    }
    char path[kPathCapacity];
    if (osGetModulePath(path, sizeof path)) {
        report.ok("library", path);
    } else {
        report.wrong("library", module + " has a path of more than 259 bytes; install elsewhere");
    }
}

void examine_brand(Report& report)
{
    const std::string brand = brand_name();
    if (brand.find('.') == std::string::npos) {
        report.ok("brand", brand);
    } else {
        report.wrong("brand",
            "\"" + brand
                + "\" holds a part of the library's file name; name it "
                  "lib<brand>gui.so, with 2 to 5 letters for the brand");
    }
}

void examine_config(Report& report, const char* which, const std::string& path)
{
    if (path.empty() || is_there(path)) {
        report.ok(which, path.empty() ? "none" : path);
    } else {
        report.wrong(which, "there is no " + path + "; correct -config");
    }
}

/// What the directory holds of which WebKit opens every file whose name ends in ".so".
struct ExtensionFiles {
    std::string library; // the examined library, or else a file of its name
    std::string misnamed; // the library under a name that WebKit ignores
    std::string product; // the library of another product
    std::size_t others = 0;
};

ExtensionFiles extension_files(const std::string& directory)
{
    const fs::path& library = g_CallRecorder.module;
    ExtensionFiles found;
    for (const fs::path& file : files_in(directory)) {
        const bool same = is_same_file(file, library);
        if (same && !is_so(file)) {
            found.misnamed = file;
        } else if (same || (is_so(file) && file.filename() == library.filename())) {
            found.library = file;
        } else if (is_so(file)) {
            found.others += file.filename() == "lib" + brand_name() + ".so" ? 0 : 1;
            if (exports(file, "webkit_web_extension_initialize")) {
                found.product = file;
            }
        }
    }
    return found;
}

/// Reports on the files of the directory. Returns the path of the library among them; empty for
/// none.
std::string examine_extension_files(Report& report, const std::string& directory)
{
    const ExtensionFiles found = extension_files(directory);
    if (!found.library.empty()) {
        report.ok("module", "WebKit opens " + found.library);
    } else if (!found.misnamed.empty()) {
        report.wrong("module",
            found.misnamed
                + " does not end in \".so\", so WebKit ignores it "
                  "and pages have no Tovik; make a link that does");
    } else {
        report.wrong("module",
            "the library is not in " + directory
                + ", so pages have no Tovik; put it there, beside the plug-in");
    }
    const std::string count = std::to_string(found.others)
        + (found.others == 1 ? " other library in " : " other libraries in ") + directory
        + ", which WebKit opens in the web process";
    if (found.others >= kManyLibraries) {
        report.wrong("other libraries", count + "; give the product a directory of its own");
    } else if (found.others > 0) {
        report.note("other libraries", count);
    }
    if (!found.product.empty()) {
        report.wrong("other libraries",
            found.product
                + " is the library of another product, whose plug-in pages then reach; give each "
                  "product a directory of its own");
    }
    return found.library;
}

/// Reports on the extension directory and its files. Returns the path of the library among them;
/// empty for none.
std::string examine_extension_directory(Report& report)
{
    g_CallRecorder.extensionDirectory.reset();
    wa_web_init_web_extension_cb(nullptr, nullptr);
    places_looked_at();
    const std::string directory = g_CallRecorder.extensionDirectory.value_or("");
    if (directory.empty()) {
        report.wrong("extension directory",
            g_CallRecorder.extensionDirectory.has_value()
                ? "empty, as -root has no value; give it one"
                : "none, so pages have no Tovik: it is that of the plug-in; install the plug-in "
                  "beside the library, or give -root");
        return "";
    }
    if (!is_there(directory + "/.")) {
        report.wrong("extension directory", directory + " is no directory; correct -root");
        return "";
    }
    if (!is_utf8(directory)) {
        report.wrong("extension directory",
            directory + " is not UTF-8, so pages have no Tovik; choose another place");
        return "";
    }
    report.ok("extension directory", directory);
    return examine_extension_files(report, directory);
}

/// Examines the plug-in of the web process, which is looked for only beside the library.
/// library  path of the library that WebKit opens
/// other    path of the plug-in of the user-interface process; empty for none
void examine_web_process(Report& report, const std::string& library, const std::string& other)
{
    const std::string ours = std::exchange(g_CallRecorder.module, library);
    char root[kPathCapacity];
    const bool hasRoot = osGetModuleRoot(root, sizeof root);
    const std::string path = (hasRoot ? root : "") + ("lib" + brand_name() + ".so");
    g_CallRecorder.module = ours;
    if (!is_there(path)) {
        report.wrong(
            "plug-in for pages", "there is no " + path + "; put the plug-in beside the library");
    } else if (!other.empty() && !is_same_file(path, other)) {
        report.wrong("plug-in for pages",
            path + " is another file than the plug-in of the user-interface process, " + other
                + "; keep one");
    } else {
        report.ok("plug-in for pages", path);
    }
}

void examine_root(Report& report)
{
    const char* value = nullptr;
    if (wa_get_argument("-root", &value) == 0 || *value == 0) {
        return;
    }
    const std::string root = value;
    if (!root.starts_with('/')) {
        report.wrong("root",
            root + " is a relative path, so pages found there are not shown; use "
                + (fs::absolute(root) / "").lexically_normal().native());
    } else if (!root.ends_with('/')) {
        report.wrong("root",
            root
                + " does not end in \"/\", so that pages are looked "
                  "for under names that begin with it; end it with \"/\"");
    }
}

} // namespace

void examine_installation(const std::string& program, Report& report)
{
    char path[kPathCapacity];
    const fs::path own = is_there(program) ? fs::canonical(program) : fs::path(program);
    const std::size_t bin = own.native().find("/bin/");
    if (!osGetApplicationPath(path, sizeof path) || own != path) {
        report.wrong("program",
            "the layout reads " + std::string(path) + " for " + program
                + ": it reads the path up to the first space, 259 bytes at most; install "
                  "elsewhere");
    } else if (bin != std::string::npos
        && fs::path(own.native().substr(0, bin + 4)) != own.parent_path()) {
        report.wrong("program",
            own.native()
                + " has a directory bin further up, beside which the plug-in is looked for; "
                  "install elsewhere");
    } else if (!is_there(program)) {
        report.note(
            "program", "there is no " + program + "; the places are those that it would have");
    } else {
        report.ok("program", path);
    }
    examine_library(report);
    examine_brand(report);
    examine_mock(g_CallRecorder.module, report);
}

void examine_plugin_files(Report& report)
{
    places_looked_at();
    wa_GetPlugin();
    const std::string places = places_looked_at();
    const std::string& plugin = g_CallRecorder.plugin;
    const std::string searched = places.empty() ? "" : "; " + places;
    if (plugin.empty()) {
        report.wrong("plug-in",
            "no file of the installation, so the loader is asked for libtovik.so" + searched
                + "; install lib" + brand_name() + ".so beside the library");
    } else if (!is_there(plugin)) {
        report.wrong("plug-in", "there is no " + plugin + "; correct -plugin");
    } else {
        report.ok("plug-in", plugin + searched);
    }
    examine_config(report, "global configuration", g_CallRecorder.globalConfig);
    examine_config(report, "local configuration", g_CallRecorder.localConfig);
    examine_root(report);
    const std::string library = examine_extension_directory(report);
    if (!library.empty()) {
        examine_web_process(report, library, plugin);
    }
}
