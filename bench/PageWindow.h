// PageWindow.h: a plain window around a web view, run until its page says that it is done.
#pragma once

#include <webkit2/webkit2.h>

/// Shows `view`, which the window then owns, in a window as large as the host's, loads `url` and
/// runs the main loop until the page navigates to a URL that begins with "tvk://exit?", which is
/// printed, or the window is closed.
void run_page_window(WebKitWebView* view, const char* url);
