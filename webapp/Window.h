// Window.h: the one window: its widgets, its run from first showing to the end of the main loop,
// and the work area that its geometry is computed against.
#pragma once

#include "webapp/Geometry.h"

#include <gtk/gtk.h>

/// Builds the content of the window, a box with the scrolled web view, and returns it; the window
/// of wa_gui_show() takes it over. Null when GTK has no display.
/// userAgent  value of "-useragent", or null
GtkWidget* wa_gui_start(const char* userAgent);

/// Builds the window around `content`, loads the start page, shows the window and runs the main
/// loop until it is quit.
/// icon           path of the window icon; null or "none" for no icon
/// title          window title, or null
/// x, y           position in pixels; 0,0 leaves the place to the window manager
/// width, height  size in pixels, or percentages of the work area when each is at most 100
/// wait           pause in milliseconds between starting the load and showing the window, during
///                which the main loop does not run
/// resizing       non-zero when the user may resize the window
/// system         non-zero when the window stays above others
void wa_gui_show(GtkWidget* content, const char* icon, const char* title, unsigned int x,
    unsigned int y, unsigned int width, unsigned int height, unsigned int wait, int resizing,
    int system);

/// Releases the plug-in; the content argument is not used.
void wa_gui_end(void* content);

/// Stores the usable size of the first monitor in pixels; 640 wide and 1024 high without a display.
void wa_gui_screen_size(unsigned int* width, unsigned int* height);

/// wa_gui_screen_size() as one value.
Size wa_work_area();

/// Has the destruction of `window`, a GtkWindow, end the main loop of the window's run.
void wa_bridge_prepare_window(void* window);

/// Releases the plug-in that this process loaded.
void wa_bridge_cleanup();

/// Handler of "destroy" of the window: ends the main loop as long as the window's run lasts.
void wa_destroy_cb(GtkWidget* widget, void* data) noexcept;
