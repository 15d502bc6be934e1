// Window.h: the one window: its widgets, its run from the first showing to the end of the main
// loop, and the work area that limits it.
#pragma once

#include "webapp/Geometry.h"

#include <gtk/gtk.h>

/// Builds the content of the window, a box with the scrolled web view. The window of wa_gui_show()
/// becomes its owner. Null when GTK has no display.
/// userAgent  value of "-useragent", or null
GtkWidget* wa_gui_start(const char* userAgent);

/// Builds the window around `content`, loads the start page, shows the window and runs the main
/// loop until it is quit.
/// icon           path of the window icon; null or "none" for no icon
/// title          window title, or null
/// x, y           position in pixels; with 0,0 the window manager places the window
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

/// Connects wa_destroy_cb() to `window`, a GtkWindow.
void wa_bridge_prepare_window(void* window);

/// Releases the plug-in that this process loaded.
void wa_bridge_cleanup();

/// Handler of "destroy" of the window: ends the main loop while the run of the window lasts.
void wa_destroy_cb(GtkWidget* widget, void* data) noexcept;
