// The run that the command line asks for.
#include "bridge/WebBridge.h"
#include "tools/Doctor.h"
#include "tools/Witness.h"
#include "util/Arguments.h"
#include "util/Layout.h"
#include "webapp/ShellState.h"
#include "webapp/StartPage.h"
#include "webapp/Window.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kOptions[]
    = {"-config", "-fullscreen", "-icon", "-plugin", "-position", "-resizing", "-root", "-size",
        "-store", "-system", "-title", "-url", "-useragent", "-verbose", "-wait", "--print"};

/// The options of the run: those of the command line and, where they count, of the plug-in.
struct Options {
    int count;
    char** list;
    OwnedList extended = nullptr;

    const char* text(const char* name, const char* fallback) const
    {
        const char* value = nullptr;
        return get_argument(count, list, name, &value) == 0 ? fallback : value;
    }

    std::optional<std::uint32_t> number(const char* name) const
    {
        unsigned int value = 0;
        return get_argument(count, list, name, &value) == 0 ? std::nullopt : std::optional(value);
    }
};

/// As the shell does, the plug-in's default options are taken when no "-url" is given.
Options run_options()
{
    Options options = {g_ARGC, g_ARGV};
    if (has_argument(g_ARGC, g_ARGV, "-url") == 0) {
        options.extended.reset(wa_get_default_argument_list(g_ARGV, &options.count));
        if (options.extended) {
            options.list = options.extended.get();
        }
    }
    return options;
}

void examine_options(const Options& options, Report& report)
{
    std::string shown;
    for (int i = 1; i < options.count; ++i) {
        const std::string option = options.list[i];
        shown += (shown.empty() ? "\"" : ", \"") + option + "\"";
        bool known = !option.starts_with('-');
        for (const char* name : kOptions) {
            known = known || option == name;
        }
        if (!known) {
            report.note("options", option + " is no option of the product; it is passed over");
        }
    }
    report.ok("options", shown.empty() ? "none" : shown);
}

/// The product takes a value that is no number for 0, and passes over a path that is too long.
void examine_values(const Options& options, Report& report)
{
    for (const char* name : {"-position", "-size", "-wait"}) {
        const std::string text = options.text(name, "0");
        const bool hexadecimal = text.starts_with("0x");
        const std::string digits = hexadecimal ? text.substr(2) : text;
        const char* allowed = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
        if (digits.empty() || digits.find_first_not_of(allowed) != std::string::npos) {
            report.wrong("options",
                std::string(name) + " takes a number, such as 640 or 0x028001E0, and not \"" + text
                    + "\"");
        }
    }
    for (const char* name : {"-config", "-plugin"}) {
        if (std::strlen(options.text(name, "")) >= kPathCapacity) {
            report.wrong("options",
                std::string(name) + " has more than 259 bytes, so it is passed over; shorten it");
        }
    }
}

/// The query of the command line is that of the first word that looks like a URL, if it has one.
void examine_query(const Options& options, Report& report)
{
    const std::vector<std::string> words(options.list, options.list + options.count);
    const auto is_url = [](const std::string& word) { return word.find("://") != word.npos; };
    const auto first = std::find_if(words.begin(), words.end(), is_url);
    const auto asks = std::find_if(first, words.end(),
        [&](const std::string& word) { return is_url(word) && word.find('?') != word.npos; });
    if (asks != first && asks != words.end()) {
        report.note("options",
            "the query of " + *asks + " is not passed on, as " + *first
                + " stands before it; put it first");
    }
}

void examine_loaded_library(Report& report)
{
    void* library = dlopen(g_Witness.module.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        report.wrong("loaded library", dlerror());
        return;
    }
    for (const char* name : {"Main", "EntryAdmin", "webkit_web_extension_initialize"}) {
        if (dlsym(library, name) == nullptr) {
            report.wrong("loaded library",
                g_Witness.module + " has no function " + name + "; install it again");
        }
    }
}

void examine_loaded_plugin(Report& report)
{
    if (wa_GetPlugin() == nullptr) {
        const std::string& why = g_Witness.loadFailure;
        report.wrong("plug-in of the window",
            (!g_Witness.loadedPlugin.empty() ? "does not initialise"
                    : why.empty()            ? "has no complete set of entry points"
                                             : why)
                + "; ask tovik-plugin-check");
        return;
    }
    report.ok("plug-in of the window", "loads from " + g_Witness.loadedPlugin);
}

void examine_start_page(const Options& options, Report& report)
{
    const std::string url = options.text("-url", "index.html");
    places_looked_at();
    wa_translate_url(options.count, options.list, url.c_str());
    const std::string places = places_looked_at();
    const std::string found = g_URL ? g_URL.get() : "";
    std::string file = found.starts_with("file://") ? found.substr(7) : "";
    if (!is_there(file)) {
        file.resize(std::min(file.size(), file.find_first_of("?#")));
    }
    // The path of a file that was searched for stands in the URL as it is.
    const bool misread
        = !places.empty() && !found.empty() && file.find_first_of("#?%") != std::string::npos;
    if (misread) {
        report.wrong("start page",
            "the path " + file
                + " holds \"#\", \"?\" or \"%\", which mean something else in a "
                  "URL; install elsewhere");
    } else if (url.starts_with("res://")) {
        const bool isPage = g_Content && g_Content[0] != 0;
        report.add(isPage ? Level::ok : Level::wrong, "start page",
            url + (isPage ? " from the plug-in" : " is no page of the plug-in; correct -url"));
    } else if (found.empty()) {
        report.wrong("start page", "no " + url + "; " + places + "; install it or correct -url");
    } else if (!file.empty() && url.find("://") != std::string::npos && !is_there(file)) {
        report.wrong("start page", "there is no " + file + "; correct -url");
    } else {
        report.ok("start page", found + (places.empty() ? "" : "; " + places));
    }
}

void examine_icon(const Options& options, Report& report)
{
    const std::string given = options.text("-icon", "");
    if (given.empty()) {
        const OwnedText found(wa_gui_icon_path());
        const std::string places = places_looked_at();
        report.ok("icon", (found ? found.get() : "none") + ("; " + places));
    } else if (given == "none" || is_there(given)) {
        report.ok("icon", given);
    } else {
        report.wrong("icon", "there is no " + given + "; correct -icon");
    }
}

/// Where the answer goes: the product passes over a file that it cannot write, without a word.
void examine_store(const Options& options, Report& report)
{
    const fs::path store = options.text("-store", "");
    if (store.empty() && has_argument(options.count, options.list, "--print") != 0) {
        report.ok("answer", "printed");
        return;
    }
    if (store.empty()) {
        report.note("answer", "kept nowhere, as -store names no file");
        return;
    }
    const fs::path directory = store.has_parent_path() ? store.parent_path() : ".";
    const bool writable = access(store.c_str(), W_OK) == 0
        ? !fs::is_directory(store)
        : errno == ENOENT && access(directory.c_str(), W_OK | X_OK) == 0;
    report.add(writable ? Level::ok : Level::wrong, "answer",
        store.native() + (writable ? "" : " cannot be written; correct -store"));
}

std::string shown(std::uint32_t one, const char* between, std::uint32_t other)
{
    return std::to_string(one) + between + std::to_string(other);
}

void examine_window(const Options& options, Report& report)
{
    if (gtk_init_check(nullptr, nullptr) == 0) {
        report.wrong("display", "cannot be opened; set DISPLAY or WAYLAND_DISPLAY");
        return;
    }
    const Size area = wa_work_area();
    report.ok("display", gdk_display_get_name(gdk_display_get_default()));
    report.ok("work area", shown(area.width, " x ", area.height));
    const bool fullscreen = has_argument(options.count, options.list, "-fullscreen") != 0;
    const Frame frame = wa_initial_frame(
        {options.number("-size"), fullscreen, options.number("-position")}, area);
    const Size size = wa_shown_size(frame.size, area);
    report.ok("window",
        shown(size.width, " x ", size.height) + " at "
            + std::to_string(static_cast<int>(frame.position.x)) + ", "
            + std::to_string(static_cast<int>(frame.position.y)));
}

} // namespace

void examine_run(Report& report)
{
    if (g_Witness.loadsPlugin) {
        examine_loaded_library(report);
        examine_loaded_plugin(report);
    }
    const Options options = run_options();
    examine_options(options, report);
    examine_values(options, report);
    examine_query(options, report);
    examine_start_page(options, report);
    examine_icon(options, report);
    examine_store(options, report);
    examine_window(options, report);
}
