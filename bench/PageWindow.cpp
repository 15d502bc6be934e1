#include "PageWindow.h"

#include <cstdio>

namespace {

/// TRUE: the page has ended its run; any other navigation is left to WebKit.
gboolean decide_policy_cb(
    WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type, void*) noexcept
{
    if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
        return FALSE;
    }
    WebKitNavigationAction* action = webkit_navigation_policy_decision_get_navigation_action(
        WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    if (!g_str_has_prefix(uri, "tvk://exit?")) {
        return FALSE;
    }
    webkit_policy_decision_ignore(decision);
    std::puts(uri);
    gtk_main_quit();
    return TRUE;
}

} // namespace

void run_page_window(WebKitWebView* view, const char* url)
{
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_default_size(GTK_WINDOW(window), 320, 512);
    g_signal_connect(window, "destroy", G_CALLBACK(gtk_main_quit), nullptr);
    g_signal_connect(view, "decide-policy", G_CALLBACK(decide_policy_cb), nullptr);
    gtk_container_add(GTK_CONTAINER(window), GTK_WIDGET(view));
    webkit_web_view_load_uri(view, url);
    gtk_widget_show_all(window);
    gtk_main();
}
