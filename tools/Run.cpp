// Examines the run that the command line asks for.
#include "bridge/WebBridge.h"
#include "host/ParentHandle.h"
#include "process/ProcessArguments.h"
#include "process/ProcessState.h"
#include "tools/CallRecorder.h"
#include "tools/Doctor.h"
#include "tools/PageLinks.h"
#include "tools/UserAgent.h"
#include "util/Utility.h"
#include "webapp/Options.h"
#include "webapp/ShellArguments.h"
#include "webapp/ShellState.h"
#include "webapp/StartPage.h"
#include "webapp/Window.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// What the library is asked to do.
struct Run {
    ShellArguments arguments = wa_shell_arguments(g_ARGC, g_ARGV);
    ShellOptions options = read_options(arguments.count, arguments.list);
    bool prints; // whether there is "--print", which the host does not pass to the library
};

const Option* option_named(std::string_view name)
{
    const Option* found = std::find_if(std::begin(kOptions), std::end(kOptions),
        [&](const Option& option) { return option.name == name; });
    return found == std::end(kOptions) ? nullptr : found;
}

void examine_options(const Run& run, Report& report)
{
    std::string shown;
    for (int i = 1; i < run.arguments.count; ++i) {
        const std::string word = run.arguments.list[i];
        shown += (shown.empty() ? "\"" : ", \"") + word + "\"";
        const std::string name = word.substr(0, word.find('='));
        const Option* known = option_named(name == "--inspect" ? name : word);
        if (known == nullptr && word.starts_with('-')) {
            report.note("options", word + " is no option of tovik; it is ignored");
        } else if (known != nullptr && (word == "--help" || word == "--version") && i < g_ARGC) {
            report.wrong("options", word + " shows a text and no window; leave it out");
        }
    }
    if (has_argument(run.arguments.count, run.arguments.list, option("-verbose").name) != 0) {
        report.note("options",
            "-verbose prints the answer, which may be a PIN; leave it out of what users start");
    }
    report.ok("options", shown.empty() ? "none" : shown);
}

/// Reports values that the library reads as 0 because they are no numbers, paths that it ignores
/// because they are too long, and a handle that the host cannot read.
void examine_values(const Run& run, Report& report)
{
    for (const Option& option : kOptions) {
        const char* value = nullptr;
        if (option.kind != OptionKind::number
            || get_argument(run.arguments.count, run.arguments.list, option.name, &value) == 0) {
            continue;
        }
        const std::string text = value;
        const bool hexadecimal = text.starts_with("0x");
        const std::string digits = hexadecimal ? text.substr(2) : text;
        const char* allowed = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
        if (digits.empty() || digits.find_first_not_of(allowed) != std::string::npos) {
            report.wrong("options",
                std::string(option.name) + " needs a number, such as 640 or 0x028001E0, and not \""
                    + text + "\"");
        }
    }
    for (const char* name : {"-config", "-plugin"}) {
        const char* value = nullptr;
        if (wa_get_argument(name, &value) != 0 && std::strlen(value) >= kPathCapacity) {
            report.wrong("options",
                std::string(name) + " has more than 259 bytes, so it is ignored; shorten it");
        }
    }
    const char* parent = nullptr;
    if (wa_get_argument(option("--parent").name, &parent) != 0
        && parent_handle(parent).kind == ParentHandle::Kind::none) {
        report.wrong("options", std::string("--parent \"") + parent + "\"" + kIsNoHandle);
    }
}

/// Examines the query for the start page: that of the first word that holds "://", even if this
/// word is the value of an option.
void examine_query(const ShellArguments& arguments, Report& report)
{
    char** const end = arguments.list + arguments.count;
    char** const first = std::find_if(
        arguments.list, end, [](const char* word) { return std::strstr(word, "://") != nullptr; });
    if (first == end) {
        return;
    }
    const char* query = nullptr;
    if (get_url_arguments(1, first, &query) == 0) {
        char** const other = std::find_if(
            first, end, [&](char* word) { return get_url_arguments(1, &word, &query) != 0; });
        if (other != end) {
            report.note("options",
                std::string("the query of ") + *other + " is not passed on, as " + *first
                    + " stands before it; put it first");
        }
        return;
    }
    const Option* owner = first == arguments.list ? nullptr : option_named(first[-1]);
    if (owner != nullptr && owner->kind != OptionKind::flag && owner != &option("-url")) {
        report.wrong("options",
            std::string("the page is given the query \"") + query + "\", from the value of "
                + owner->name + "; put a word such as any://x?QUERY first");
    }
}

void examine_loaded_library(Report& report)
{
    void* library = dlopen(g_CallRecorder.module.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        report.wrong("loaded library", dlerror());
        return;
    }
    for (const char* name : {"Main", "EntryAdmin", "webkit_web_extension_initialize"}) {
        if (dlsym(library, name) == nullptr) {
            report.wrong("loaded library",
                g_CallRecorder.module + " has no function " + name + "; install it again");
        }
    }
}

void examine_loaded_plugin(Report& report)
{
    if (wa_GetPlugin() == nullptr) {
        const std::string& why = g_CallRecorder.loadFailure;
        report.wrong("plug-in of the window",
            (!g_CallRecorder.loadedPlugin.empty() ? "does not initialise"
                    : why.empty()                 ? "has no complete set of entry points"
                                                  : why)
                + "; ask tovik-plugin-check");
        return;
    }
    report.ok("plug-in of the window", "loads from " + g_CallRecorder.loadedPlugin);
}

/// Path of the start page; empty when the page is no file.
/// url    value of "-url"
/// found  the URL that is loaded
std::string page_file(const std::string& url, const std::string& found)
{
    if (url.find("://") == std::string::npos) {
        const OwnedText path(wa_gui_file_path(url.c_str()));
        places_looked_at();
        return path ? path.get() : "";
    }
    const std::string bare = found.substr(0, found.find_first_of("?#"));
    const std::unique_ptr<char, ReleaseWith<g_free>> path(
        g_filename_from_uri(bare.c_str(), nullptr, nullptr));
    return path ? path.get() : "";
}

/// What is wrong with the file of the start page; empty when nothing is. Arguments as above.
std::string page_fault(const std::string& url, const std::string& found, const std::string& file)
{
    std::error_code none;
    if (found.starts_with("file://") && !found.starts_with("file:///")) {
        return found + " is a path on another computer; give an absolute path";
    }
    if (url.find("://") == std::string::npos && file.find_first_of("#?%") != std::string::npos) {
        return "the path " + file
            + " holds \"#\", \"?\" or \"%\", which mean something else in a URL; install elsewhere";
    }
    if (!file.empty() && !is_there(file)) {
        return "there is no " + file + "; correct -url";
    }
    if (fs::is_directory(file, none)) {
        return file + " is a directory, whose files are listed; "
            + (url.empty() ? "-url has no value, name a page" : "correct -url");
    }
    return "";
}

void examine_start_page(const Run& run, Report& report)
{
    const std::string url = run.options.url;
    places_looked_at();
    wa_translate_url(run.arguments.count, run.arguments.list, run.options.url);
    const std::string places = places_looked_at();
    const std::string found = g_URL ? g_URL.get() : "";
    const std::string fault = page_fault(url, found, page_file(url, found));
    if (url.starts_with("res://")) {
        const bool isPage = g_Content && g_Content[0] != 0;
        report.add(isPage ? Level::ok : Level::wrong, "start page",
            url + (isPage ? " from the plug-in" : " is no page of the plug-in; correct -url"));
    } else if (found.empty()) {
        report.wrong("start page", "no " + url + "; " + places + "; install it or correct -url");
    } else if (!fault.empty()) {
        report.wrong("start page", fault);
    } else {
        report.ok("start page", found + (places.empty() ? "" : "; " + places));
        examine_page_links(page_file(url, found), report);
    }
}

void examine_icon(const ShellOptions& options, Report& report)
{
    if (options.icon == nullptr) {
        const OwnedText found(wa_gui_icon_path());
        const std::string places = places_looked_at();
        report.ok("icon", (found ? found.get() : "none") + ("; " + places));
        return;
    }
    const std::string given = options.icon;
    if (given.empty()) {
        report.wrong("icon", "none, as -icon has no value; name a file, or none");
    } else if (given == "none" || is_there(given)) {
        report.ok("icon", given);
    } else {
        report.wrong("icon", "there is no " + given + "; correct -icon");
    }
}

/// Reports where the answer goes. The library ignores a file that it cannot write and says nothing.
void examine_store(const Run& run, Report& report)
{
    std::error_code none;
    if (run.prints && has_argument(g_ARGC, g_ARGV, option("-store").name) == 0) {
        report.ok("answer", "printed");
        return;
    }
    const fs::path store = run.options.store == nullptr ? "" : run.options.store;
    if (store.empty()) {
        report.add(run.prints ? Level::wrong : Level::note, "answer",
            run.prints ? "-store has no value, which --print refuses; name a file, or leave it out"
                       : "kept nowhere, as -store names no file");
        return;
    }
    if (run.prints && is_there(store) && !fs::is_regular_file(store, none)) {
        report.wrong("answer",
            store.native() + " is no regular file, which --print refuses; correct -store");
        return;
    }
    const fs::path directory = store.has_parent_path() ? store.parent_path() : ".";
    const bool writable = access(store.c_str(), W_OK) == 0
        ? !fs::is_directory(store, none)
        : errno == ENOENT && access(directory.c_str(), W_OK | X_OK) == 0;
    report.add(writable ? Level::ok : Level::wrong, "answer",
        store.native() + (writable ? "" : " cannot be written; correct -store"));
}

std::string shown(std::uint32_t one, const char* between, std::uint32_t other)
{
    return std::to_string(one) + between + std::to_string(other);
}

void examine_window(const WindowRectOptions& options, Report& report)
{
    if (gtk_init_check(nullptr, nullptr) == 0) {
        report.wrong("display", "cannot be opened; set DISPLAY or WAYLAND_DISPLAY");
        return;
    }
    const Size area = wa_work_area();
    report.ok("display", gdk_display_get_name(gdk_display_get_default()));
    report.ok("work area", shown(area.width, " x ", area.height));
    const WindowRect rect = wa_initial_rect(options, area);
    const Size size = wa_shown_size(rect.size, area);
    report.ok("window",
        shown(size.width, " x ", size.height) + " at "
            + std::to_string(static_cast<int>(rect.position.x)) + ", "
            + std::to_string(static_cast<int>(rect.position.y)));
}

} // namespace

void examine_run(bool prints, Report& report)
{
    if (g_CallRecorder.loadsPlugin) {
        examine_loaded_library(report);
        examine_loaded_plugin(report);
    }
    const Run run = {.prints = prints};
    examine_options(run, report);
    examine_values(run, report);
    examine_query(run.arguments, report);
    examine_start_page(run, report);
    examine_user_agent(run.options.userAgent, report);
    examine_icon(run.options, report);
    examine_store(run, report);
    examine_window(run.options.rect, report);
}
