#include "host/Inspector.h"

#include "util/Owned.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr char kOption[] = "--inspect";
constexpr unsigned int kF12 = 0xFFC9;

/// A port of 127.0.0.1 that nobody listens on: the one asked for, or any for 0. Returns 0, with
/// errno, when there is none.
int find_port(int wanted)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<unsigned short>(wanted));
    socklen_t length = sizeof address;
    const int on = 1;
    const OwnedDescriptor probe(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    auto* const place = reinterpret_cast<sockaddr*>(&address);
    // What the engine sets too: a connection that has just ended does not keep the port.
    setsockopt(probe.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const bool found = probe && bind(probe.get(), place, length) == 0
        && getsockname(probe.get(), place, &length) == 0;
    return found ? ntohs(address.sin_port) : 0;
}

/// The same, and waits for a port that somebody listens on: when a page restarts the program, the
/// process that ends may still have it.
int free_port(int wanted)
{
    constexpr int kTries = 100;
    constexpr useconds_t kPause = 20000; // microseconds
    int found = find_port(wanted);
    for (int i = 0; i < kTries && found == 0 && errno == EADDRINUSE; ++i) {
        usleep(kPause);
        found = find_port(wanted);
    }
    return found;
}

/// Handler of "key-press-event": TRUE for F12, which shows the inspector.
int key_pressed_cb(void* view, void* event, void* data) noexcept
{
    const Library& library = *static_cast<const Library*>(data);
    unsigned int key = 0;
    function_of<int(void*, unsigned int*)>(library, "gdk_event_get_keyval")(event, &key);
    if (key != kF12) {
        return 0;
    }
    function_of<void(void*)>(library, "webkit_web_inspector_show")(
        function_of<void*(void*)>(library, "webkit_web_view_get_inspector")(view));
    return 1;
}

} // namespace

const char* inspect_option(int argc, char** argv)
{
    constexpr std::size_t kLength = sizeof kOption - 1;
    const char* value = nullptr;
    for (int i = 1; i < argc; ++i) {
        const char* rest = argv[i] + kLength;
        if (std::strncmp(argv[i], kOption, kLength) == 0 && (*rest == 0 || *rest == '=')) {
            value = *rest == 0 ? rest : rest + 1;
        }
    }
    return value;
}

bool serve_inspector(const char* port)
{
    char* end = nullptr;
    const long wanted = std::strtol(port, &end, 10);
    if (*end != 0 || wanted < 0 || wanted > 65535) {
        std::fprintf(
            stderr, "tovik: --inspect accepts a port up to 65535, or none: --inspect=9000\n");
        return false;
    }
    const int served = free_port(static_cast<int>(wanted));
    if (served == 0) {
        std::fprintf(stderr, "tovik: cannot serve the inspector on port %ld: %s; give another\n",
            wanted, std::strerror(errno));
        return false;
    }
    char address[32];
    std::snprintf(address, sizeof address, "127.0.0.1:%d", served);
    setenv("WEBKIT_INSPECTOR_HTTP_SERVER", address, 1);
    std::fprintf(stderr, "tovik: inspect the page at http://%s/, or press F12\n", address);
    return true;
}

void prepare_inspector(const Library& library)
{
    function_of<void*()>(library, "g_proxy_resolver_get_default")();
}

void allow_inspector(const Library& library, void* view)
{
    void* settings = function_of<void*(void*)>(library, "webkit_web_view_get_settings")(view);
    function_of<void(void*, int)>(library, "webkit_settings_set_enable_developer_extras")(
        settings, 1);
    connect_signal(
        library, view, "key-press-event", key_pressed_cb, const_cast<Library*>(&library));
}
