// BareWindow.cpp: the reference of the start-up and of the memory: the least program that shows a
// page in a window, linked to GTK and WebKit directly and without a web extension.
#include "PageWindow.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s URL\n", argv[0]);
        return 2;
    }
    gtk_init(nullptr, nullptr);
    run_page_window(WEBKIT_WEB_VIEW(webkit_web_view_new()), argv[1]);
    return 0;
}
