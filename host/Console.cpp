#include "host/Console.h"

#include "host/ConsoleScript.h"
#include "host/Line.h"

#include <cstring>

namespace {

/// GError of GLib.
struct Error {
    unsigned int domain;
    int code;
    const char* message;
};

/// What the handlers know.
struct Watch {
    const Library& library;
    void* view;
    unsigned int networkDomain;
    unsigned int policyDomain;
    bool asks; // whether ask_page_cb() is called
    int waited; // how often it has been called since it asked; 0 when the page has answered
};

/// Calls of ask_page_cb() that a page may leave unanswered.
constexpr int kPatience = 3;

/// Whether a load has ended because the page or the shell wanted so: by a further navigation or by
/// an action.
bool is_wanted(const Watch& watch, const Error& error)
{
    constexpr int kCancelled = 302;
    constexpr int kInterruptedByPolicy = 102;
    return (error.domain == watch.networkDomain && error.code == kCancelled)
        || (error.domain == watch.policyDomain && error.code == kInterruptedByPolicy);
}

const char* uri_of(const Watch& watch, void* resource)
{
    return function_of<const char*(void*)>(watch.library, "webkit_web_resource_get_uri")(resource);
}

/// Handler of "failed" of a resource.
void resource_failed_cb(void* resource, const Error* error, void* data) noexcept
{
    const Watch& watch = *static_cast<const Watch*>(data);
    void* page
        = function_of<void*(void*)>(watch.library, "webkit_web_view_get_main_resource")(watch.view);
    // "load-failed" tells of the page itself.
    if (resource != page && !is_wanted(watch, *error)) {
        print_line({"page: not loaded ", uri_of(watch, resource), ": ", error->message});
    }
}

/// Handler of "notify::response" of a resource.
void response_changed_cb(void* resource, void*, void* data) noexcept
{
    constexpr unsigned int kFirstError = 400;
    const Watch& watch = *static_cast<const Watch*>(data);
    void* response
        = function_of<void*(void*)>(watch.library, "webkit_web_resource_get_response")(resource);
    if (response == nullptr) {
        return;
    }
    const unsigned int status = function_of<unsigned int(void*)>(
        watch.library, "webkit_uri_response_get_status_code")(response);
    if (status >= kFirstError) {
        char number[16];
        std::snprintf(number, sizeof number, "%u", status);
        print_line({"page: not loaded ", uri_of(watch, resource), ": HTTP status ", number});
    }
}

/// Handler of "resource-load-started".
void resource_started_cb(void*, void* resource, void*, void* data) noexcept
{
    const Watch& watch = *static_cast<const Watch*>(data);
    connect_signal(watch.library, resource, "failed", resource_failed_cb, data);
    connect_signal(watch.library, resource, "notify::response", response_changed_cb, data);
}

/// Handler of "load-failed": FALSE, so that the engine shows its own page.
int load_failed_cb(void*, int, const char* uri, const Error* error, void* data) noexcept
{
    if (!is_wanted(*static_cast<const Watch*>(data), *error)) {
        print_line({"page: not loaded ", uri, ": ", error->message});
    }
    return 0;
}

/// Receives the answer to ask_page_cb(), or an error when the web process has ended.
void page_answered_cb(void* view, void* result, void* data) noexcept
{
    Watch& watch = *static_cast<Watch*>(data);
    void* value = function_of<void*(void*, void*, void*)>(
        watch.library, "webkit_web_view_evaluate_javascript_finish")(view, result, nullptr);
    if (value != nullptr) {
        function_of<void(void*)>(watch.library, "g_object_unref")(value);
    }
    if (watch.waited > kPatience && value != nullptr) {
        print_line({"page: the web process responds again"});
    }
    watch.waited = 0;
}

/// Asks the page for a number, or waits for its last answer: the engine itself notices a busy page
/// only after seconds, and only when the user presses a key or a button. False ends it.
int ask_page_cb(void* data) noexcept
{
    using Evaluate = void(void*, const char*, long, const char*, const char*, void*,
        void (*)(void*, void*, void*) noexcept, void*);
    Watch& watch = *static_cast<Watch*>(data);
    if (watch.waited == 0) {
        function_of<Evaluate>(watch.library, "webkit_web_view_evaluate_javascript")(
            watch.view, "1", -1, "tovik", nullptr, nullptr, page_answered_cb, &watch);
    } else if (watch.waited == kPatience) {
        print_line({"page: the web process does not respond: a script, a dialog or a call of the "
                    "plug-in goes on"});
    }
    ++watch.waited;
    return watch.asks ? 1 : 0;
}

/// Handler of "load-changed": asks from the first page on, when the web process has started.
void load_changed_cb(void*, int event, void* data) noexcept
{
    constexpr int kCommitted = 2;
    constexpr unsigned int kInterval = 400; // milliseconds
    Watch& watch = *static_cast<Watch*>(data);
    if (event == kCommitted && !watch.asks) {
        watch.asks = true;
        function_of<unsigned int(unsigned int, int (*)(void*) noexcept, void*)>(
            watch.library, "g_timeout_add")(kInterval, ask_page_cb, data);
    }
}

/// Handler of "web-process-terminated": nobody is left to ask.
void web_process_ended_cb(void*, int, void* data) noexcept
{
    static_cast<Watch*>(data)->asks = false;
}

/// Handler of "script-message-received".
void message_received_cb(void*, void* result, void* data) noexcept
{
    const Library& library = static_cast<const Watch*>(data)->library;
    char* text = function_of<char*(void*)>(library, "jsc_value_to_string")(
        function_of<void*(void*)>(library, "webkit_javascript_result_get_js_value")(result));
    print_line({"page: ", text});
    function_of<void(void*)>(library, "g_free")(text);
}

void add_script(const Library& library, void* manager)
{
    using NewScript = void*(const char*, int, int, const char* const*, const char* const*);
    constexpr int kAllFrames = 0;
    constexpr int kAtStart = 0;
    void* script = function_of<NewScript>(library, "webkit_user_script_new")(
        kConsoleScript, kAllFrames, kAtStart, nullptr, nullptr);
    function_of<void(void*, void*)>(library, "webkit_user_content_manager_add_script")(
        manager, script);
    function_of<void(void*)>(library, "webkit_user_script_unref")(script);
}

} // namespace

void watch_page(const Library& library, void* view)
{
    const auto domain
        = [&](const char* name) { return function_of<unsigned int()>(library, name)(); };
    static Watch watch = {library, view, domain("webkit_network_error_quark"),
        domain("webkit_policy_error_quark"), false, 0};
    void* manager
        = function_of<void*(void*)>(library, "webkit_web_view_get_user_content_manager")(view);
    connect_signal(
        library, manager, "script-message-received::tovikConsole", message_received_cb, &watch);
    function_of<int(void*, const char*)>(library,
        "webkit_user_content_manager_register_script_message_handler")(manager, "tovikConsole");
    add_script(library, manager);
    connect_signal(library, view, "resource-load-started", resource_started_cb, &watch);
    connect_signal(library, view, "load-failed", load_failed_cb, &watch);
    connect_signal(library, view, "load-changed", load_changed_cb, &watch);
    connect_signal(library, view, "web-process-terminated", web_process_ended_cb, &watch);
}
