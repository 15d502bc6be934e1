#include "webapp/Window.h"

#include "bridge/WebBridge.h"
#include "process/Trace.h"
#include "util/StringUtil.h"
#include "webapp/OwnedObject.h"
#include "webapp/PageActions.h"
#include "webapp/ShellState.h"
#include "webapp/View.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

GtkWidget* create_window(const char* icon)
{
    if (icon == nullptr || tovik::_strcmp(icon, "none") == 0) {
        return gtk_window_new(GTK_WINDOW_TOPLEVEL);
    }
    // GTK prints a warning about an unreadable icon unless the caller receives the error.
    GError* error = nullptr;
    gtk_window_set_default_icon_from_file(icon, &error);
    const OwnedError ofDefault(std::exchange(error, nullptr));
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_icon_from_file(GTK_WINDOW(window), icon, &error);
    const OwnedError ofWindow(error);
    return window;
}

/// Sets title, default size and handlers of the new window. GTK refuses a default size beyond the
/// range of an int, such as a height that wrapped below zero, so the work area is the most.
void prepare_window(GtkWidget* window, const char* title, Size size, Size workArea)
{
    if (title != nullptr) {
        gtk_window_set_title(GTK_WINDOW(window), title);
    }
    gtk_window_set_default_size(GTK_WINDOW(window),
        static_cast<int>(std::min(size.width, workArea.width)),
        static_cast<int>(std::min(size.height, workArea.height)));
    wa_bridge_prepare_window(window);
}

/// Places the window, sets its initial size, shows it and runs the main loop.
void run_window(GtkWindow* window, Position at, int resizing, int system)
{
    if (at.x != 0 || at.y != 0) {
        gtk_window_move(window, static_cast<int>(at.x), static_cast<int>(at.y));
    }
    wa_web_action_Resize(g_Size, 0);
    gtk_window_set_resizable(window, resizing != 0);
    if (system != 0) {
        gtk_window_set_keep_above(window, TRUE);
    }
    gtk_widget_show_all(GTK_WIDGET(window));
    gtk_main();
}

} // namespace

GtkWidget* wa_gui_start(const char* userAgent)
{
    if (gdk_display_get_default() == nullptr) {
        return nullptr;
    }
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(
        GTK_SCROLLED_WINDOW(scrolled), GTK_POLICY_AUTOMATIC, GTK_POLICY_AUTOMATIC);
    WebKitWebContext* context = webkit_web_context_get_default();
    if (context != nullptr) {
        wa_create_view(context, userAgent);
        gtk_container_add(GTK_CONTAINER(scrolled), GTK_WIDGET(g_WebView));
    }
    gtk_box_pack_start(GTK_BOX(box), scrolled, TRUE, TRUE, 0);
    return box;
}

void wa_gui_show(GtkWidget* content, const char* icon, const char* title, unsigned int x,
    unsigned int y, unsigned int width, unsigned int height, unsigned int wait, int resizing,
    int system)
{
    const Size workArea = wa_work_area();
    wa_trace("Screen size", packed_pair(workArea));
    wa_trace("Dialog size", packed_pair(width, height));
    wa_trace("Dialog position", packed_pair(x, y));
    const Size size = wa_shown_size({width, height}, workArea);
    g_Size = packed_pair(size);

    g_MainWindow = create_window(icon);
    if (g_MainWindow == nullptr) {
        return;
    }
    prepare_window(g_MainWindow, title, size, workArea);
    gtk_container_add(GTK_CONTAINER(g_MainWindow), content);
    wa_open_view();
    gtk_widget_grab_focus(GTK_WIDGET(g_WebView));
    if (wait != 0) {
        usleep(wait * 1000);
    }
    run_window(GTK_WINDOW(g_MainWindow), {x, y}, resizing, system);
    // The host may go on with a main loop of its own while the window and its page still exist.
    // They end no main loop while this is null.
    g_MainWindow = nullptr;
}

void wa_gui_end(void*)
{
    wa_bridge_cleanup();
}

void wa_gui_screen_size(unsigned int* width, unsigned int* height)
{
    *width = 640;
    *height = 1024;
    GdkDisplay* display = gdk_display_get_default();
    GdkMonitor* monitor = display == nullptr ? nullptr : gdk_display_get_monitor(display, 0);
    if (monitor != nullptr) {
        GdkRectangle area = {};
        gdk_monitor_get_workarea(monitor, &area);
        *width = static_cast<unsigned int>(area.width);
        *height = static_cast<unsigned int>(area.height);
    }
}

Size wa_work_area()
{
    Size area = {};
    wa_gui_screen_size(&area.width, &area.height);
    return area;
}

void wa_bridge_prepare_window(void* window)
{
    g_signal_connect(window, "destroy", G_CALLBACK(wa_destroy_cb), nullptr);
}

void wa_bridge_cleanup()
{
    wa_FreePlugin();
}

void wa_destroy_cb(GtkWidget*, void*) noexcept
{
    if (g_MainWindow != nullptr) {
        gtk_main_quit();
    }
}
