// MapWatch.cpp: prints, for every window that is mapped on the root of the X display, the time on
// the monotonic clock in nanoseconds. The first line is "ready": from then on no window is missed.
#include <X11/Xlib.h>

#include <chrono>
#include <cstdio>

int main()
{
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        std::fprintf(stderr, "bench-map-watch: cannot open a display\n");
        return 3;
    }
    XSelectInput(display, XDefaultRootWindow(display), SubstructureNotifyMask);
    XSync(display, False);
    std::puts("ready");
    std::fflush(stdout);
    // The driver ends this process; the display's own end does it too, through Xlib.
    for (;;) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MapNotify) {
            const std::chrono::nanoseconds now
                = std::chrono::steady_clock::now().time_since_epoch();
            std::printf("%lld\n", static_cast<long long>(now.count()));
            std::fflush(stdout);
        }
    }
}
