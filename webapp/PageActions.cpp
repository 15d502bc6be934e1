#include "webapp/PageActions.h"

#include "process/ProcessState.h"
#include "process/Trace.h"
#include "util/StringUtil.h"
#include "util/Utility.h"
#include "webapp/ShellState.h"
#include "webapp/StartPage.h"
#include "webapp/View.h"
#include "webapp/Window.h"

#include <unistd.h>

namespace {

constexpr char kActionScheme[] = "tvk://";

/// Carries out an action; not every action uses the status and the response.
using Action = void (*)(const char* status, const char* response);

/// URI of a navigation; null when its request has none.
const char* navigation_uri(WebKitPolicyDecision* decision)
{
    WebKitNavigationAction* action = webkit_navigation_policy_decision_get_navigation_action(
        WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    return webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
}

/// Sets the smallest size of the view. A scrolled window asks for no more than its scroll bars
/// need, whatever its content asks for, so it receives the same minimum.
void set_minimum_size(GtkWidget* view, int width, int height)
{
    gtk_widget_set_size_request(view, width, height);
    GtkWidget* ancestor = gtk_widget_get_ancestor(view, GTK_TYPE_SCROLLED_WINDOW);
    if (ancestor != nullptr) {
        GtkScrolledWindow* scrolled = GTK_SCROLLED_WINDOW(ancestor);
        gtk_scrolled_window_set_min_content_width(scrolled, width);
        gtk_scrolled_window_set_min_content_height(scrolled, height);
    }
}

void exit_action(const char* status, const char* response)
{
    wa_trace("   Status  ", status == nullptr ? "[null]" : status);
    wa_trace("   Response", status == nullptr ? "[null]" : response);
    wa_web_action_Exit(status, response);
}

void resize_action(const char* status, const char*)
{
    const bool percent = tovik::_strlen(status) <= 3;
    wa_trace("   Size   ", status);
    wa_trace("   Percent", percent ? "YES" : "NO");
    const long value = string2number(status == nullptr ? "" : status);
    wa_web_action_Resize(static_cast<unsigned int>(value), percent ? 1 : 0);
}

void reload_action(const char*, const char*)
{
    wa_web_action_Reload();
}

void restart_action(const char*, const char*)
{
    wa_web_action_Restart();
}

void install_action(const char*, const char*)
{
    wa_web_action_Script("install", 0);
}

void uninstall_action(const char*, const char*)
{
    wa_web_action_Script("uninstall", 1);
    gtk_main_quit();
}

constexpr struct {
    const char* name;
    Action carryOut;
} kActions[] = {
    {"exit", exit_action},
    {"resize", resize_action},
    {"reload", reload_action},
    {"restart", restart_action},
    {"install", install_action},
    {"uninstall", uninstall_action},
};

} // namespace

gboolean wa_web_decide_policy_cb(
    WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type, void*) noexcept
{
    if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
        const char* uri = navigation_uri(decision);
        if (tovik::_strncmp(uri, kActionScheme, sizeof kActionScheme - 1) == 0) {
            webkit_policy_decision_ignore(decision);
            if (g_MainWindow != nullptr) {
                wa_web_action(uri);
            }
        } else {
            webkit_policy_decision_use(decision);
        }
        return TRUE;
    }
    return type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION
        || type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE;
}

void wa_web_action(const char* uri)
{
    const OwnedText action(get_uri_action(uri));
    if (action) {
        const OwnedText status(get_uri_argument(uri, "status"));
        const OwnedText response(get_uri_argument(uri, "response"));
        wa_web_action(action.get(), status.get(), response.get());
    }
}

void wa_web_action(const char* action, const char* status, const char* response)
{
    wa_trace("Action:", action);
    for (const auto& [name, carryOut] : kActions) {
        if (tovik::_strcmp(action, name) == 0) {
            carryOut(status, response);
            return;
        }
    }
}

void wa_web_action_Exit(const char* status, const char* response)
{
    g_Status.reset(tovik::_strnew(status));
    g_Response.reset(tovik::_strnew(response));
    gtk_main_quit();
}

void wa_web_action_Resize(unsigned int value, unsigned int percent)
{
    const Size workArea = wa_work_area();
    const Size size = wa_resized(value, percent != 0, size_of_pair(g_Size), workArea);
    const int width = static_cast<int>(size.width);
    const int height = static_cast<int>(size.height);
    GtkWindow* window = GTK_WINDOW(g_MainWindow);
    set_minimum_size(GTK_WIDGET(g_WebView), width, height);
    // A window that the user cannot resize never gets smaller than its default size.
    gtk_window_set_default_size(window, width, height);
    gtk_window_resize(window, width, height);

    int x = 0;
    int y = 0;
    gtk_window_get_position(window, &x, &y);
    const Position at = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)};
    const Position inside = wa_moved_inside(at, size, workArea);
    if ((x == 0 && y == 0) || inside == at) {
        return;
    }
    wa_trace("Dialog old position", packed_pair(at));
    wa_trace("Dialog new position", packed_pair(inside));
    gtk_window_move(window, static_cast<int>(inside.x), static_cast<int>(inside.y));
}

void wa_web_action_Reload()
{
    const char* query = nullptr;
    if (wa_get_url_arguments(&query) == 0) {
        wa_open_view_again();
        return;
    }
    const OwnedText redirect = wa_redirect_of_query(query);
    if (!redirect) {
        return;
    }
    if (after_scheme(redirect.get()) != nullptr) {
        wa_open_url(redirect.get());
    }
    gtk_main_quit();
}

void wa_web_action_Restart()
{
    const OwnedArgumentCopies arguments(wa_copy_argument_list());
    const pid_t child = fork();
    if (child < 0) {
        return;
    }
    if (child == 0) {
        become_fresh_process();
        execv(arguments[0], arguments.get());
    }
    _exit(0);
}

void wa_web_action_Script(const char* name, unsigned char search)
{
    wa_call_script(name, search);
}

char** wa_copy_argument_list()
{
    const std::size_t count = g_ARGC < 1 ? 0 : static_cast<std::size_t>(g_ARGC);
    OwnedArgumentCopies copies(new char*[count + 1]());
    for (std::size_t i = 0; i < count; ++i) {
        copies[i] = tovik::_strconcat(g_ARGV[i], nullptr);
    }
    return copies.release();
}

void wa_free_argument_copies(char** copies)
{
    for (char** copy = copies; *copy != nullptr; ++copy) {
        delete[] * copy;
    }
    delete[] copies;
}

OwnedText wa_redirect_of_query(const char* query)
{
    constexpr char kName[] = "redirect=";
    const char* value = tovik::_strstr(query, kName);
    if (value == nullptr) {
        return nullptr;
    }
    OwnedText redirect(tovik::_strnew(value + tovik::_strlen(kName)));
    char* token = tovik::_strstr(redirect.get(), "&autostarttoken=");
    if (token != nullptr) {
        *token = 0;
    }
    url_decode(redirect.get());
    return redirect;
}
