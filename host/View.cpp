#include "host/View.h"

#include "host/Console.h"
#include "host/Inspector.h"
#include "host/Line.h"
#include "host/Parent.h"
#include "host/ProductLayout.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

namespace {

/// GValue of GObject, whose layout is part of that library's interface.
struct Value {
    unsigned long type;
    void* content;
    void* unused;
};

bool is_language(const char* name)
{
    const std::size_t length = std::strcspn(name, ".@");
    return length > 0 && std::string_view(name, length) != "C"
        && std::string_view(name, length) != "POSIX";
}

/// In the locale "C.UTF-8" the engine calls the language of its user "C", with which the functions
/// of Intl throw. Gives it those of LANGUAGE, or else "en".
void give_language(const Library& library, void* context)
{
    constexpr std::size_t kMost = 8;
    const char* locale = std::setlocale(LC_CTYPE, nullptr);
    if (locale == nullptr || is_language(locale)) {
        return;
    }
    char names[256] = "";
    const char* wanted = std::getenv("LANGUAGE");
    std::snprintf(names, sizeof names, "%s", wanted == nullptr ? "" : wanted);
    const char* languages[kMost + 1] = {};
    std::size_t count = 0;
    char* rest = nullptr;
    for (char* name = strtok_r(names, ":", &rest); name != nullptr && count < kMost;
         name = strtok_r(nullptr, ":", &rest)) {
        if (is_language(name)) {
            name[std::strcspn(name, ".@")] = 0;
            languages[count++] = name;
        }
    }
    if (count == 0) {
        languages[0] = "en";
    }
    function_of<void(void*, const char* const*)>(
        library, "webkit_web_context_set_preferred_languages")(context, languages);
}

/// Handler of "web-process-terminated".
void web_process_ended_cb(void*, int reason, void* data) noexcept
{
    constexpr int kMemoryLimit = 1;
    static_cast<Run*>(data)->webProcessEnded = true;
    print_line({reason == kMemoryLimit
            ? "tovik: the web process has ended: it used too much memory; close the window"
            : "tovik: the web process has crashed, often in the plug-in; close the window and run "
              "tovik-plugin-check"});
}

/// The value of an option as the library reads it: empty when it is missing, null without the
/// option.
const char* option_value(const Run& run, const char* name)
{
    char** const end = run.argv + run.argc;
    char** const found = std::find_if(
        run.argv, end, [=](const char* word) { return std::strcmp(word, name) == 0; });
    if (found == end) {
        return nullptr;
    }
    return found + 1 == end || *found[1] == '-' ? "" : found[1];
}

/// Emission hook of "parent-set", with the widget as the first value. True as long as it is to be
/// called again.
int parent_set_cb(void*, unsigned int, const Value* values, void* data) noexcept
{
    Run& run = *static_cast<Run*>(data);
    const Library& library = run.library;
    void* widget = values[0].content;
    if (std::strcmp(function_of<const char*(void*)>(library, "g_type_name_from_instance")(widget),
            "WebKitWebView")
        != 0) {
        return 1;
    }
    run.view = widget;
    give_language(
        library, function_of<void*(void*)>(library, "webkit_web_view_get_context")(widget));
    connect_signal(library, widget, "web-process-terminated", web_process_ended_cb, &run);
    if (run.console) {
        watch_page(library, widget);
    }
    if (run.inspect) {
        allow_inspector(library, widget);
    }
    const char* parent = option_value(run, "--parent");
    if (parent != nullptr) {
        give_parent(library, widget, parent, option_value(run, "-position") != nullptr);
    }
    return 0;
}

void print_missing_page(const Run& run)
{
    const char* page = option_value(run, "-url");
    const char* rootOption = option_value(run, "-root");
    if (page != nullptr && std::strstr(page, "://") != nullptr) {
        print_line({"tovik: start page not found: the plug-in has no ", page, "; correct -url"});
        return;
    }
    char resolved[PATH_MAX];
    const char* library = realpath(run.library.path, resolved);
    const std::string_view path = library == nullptr ? run.library.path : library;
    const std::size_t name = path.rfind('/') + 1;
    const std::string_view root = rootOption == nullptr ? "" : rootOption;
    print_line({"tovik: start page not found: ", page == nullptr ? "index.html" : page,
        page == nullptr ? " (or what the plug-in's default options say)" : "", "; looked in ",
        path.substr(0, name), root.empty() ? "" : ", ", root, ", /etc/",
        brand_of_library(path.substr(name)), "/"});
}

int main_loop_started_cb(void* data) noexcept
{
    const Run& run = *static_cast<Run*>(data);
    if (run.view != nullptr
        && function_of<const char*(void*)>(run.library, "webkit_web_view_get_uri")(run.view)
            == nullptr) {
        print_missing_page(run);
    }
    return 0;
}

} // namespace

void await_view(Run& run)
{
    using Hook = int(void*, unsigned int, const Value*, void*);
    using AddHook = unsigned long(unsigned int, unsigned int, Hook*, void*, void (*)(void*));
    const unsigned long widget = function_of<unsigned long()>(run.library, "gtk_widget_get_type")();
    function_of<void*(unsigned long)>(run.library, "g_type_class_ref")(widget);
    const unsigned int signal = function_of<unsigned int(const char*, unsigned long)>(
        run.library, "g_signal_lookup")("parent-set", widget);
    function_of<AddHook>(run.library, "g_signal_add_emission_hook")(
        signal, 0, parent_set_cb, &run, nullptr);
}

void report_missing_page(Run& run)
{
    function_of<unsigned int(int (*)(void*), void*)>(run.library, "g_idle_add")(
        main_loop_started_cb, &run);
}
