#include "host/Engine.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <initializer_list>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// GValue of GObject, whose layout is part of that library's interface.
struct Value {
    unsigned long type;
    void* content;
    void* unused;
};

/// The last argument is webkit_download_cancel().
void download_started_cb(void*, void* download, void* cancel) noexcept
{
    reinterpret_cast<void (*)(void*)>(cancel)(download);
}

/// Emission hook of "parent-set", with the widget as the first value: waits for the web view and
/// connects to its context. TRUE as long as it is to be called again.
int parent_set_cb(void*, unsigned int, const Value* values, void* data) noexcept
{
    using Connect = unsigned long(
        void*, const char*, void (*)(void*, void*, void*), void*, void*, unsigned int);
    const Library& library = *static_cast<const Library*>(data);
    void* widget = values[0].content;
    const char* type
        = function_of<const char*(void*)>(library, "g_type_name_from_instance")(widget);
    if (std::strcmp(type, "WebKitWebView") != 0) {
        return 1;
    }
    void* context = function_of<void*(void*)>(library, "webkit_web_view_get_context")(widget);
    auto* cancel = function_of<void(void*)>(library, "webkit_download_cancel");
    function_of<Connect>(library, "g_signal_connect_data")(context, "download-started",
        download_started_cb, reinterpret_cast<void*>(cancel), nullptr, 0);
    return 0;
}

int caller_ended_cb(int, unsigned int, void*) noexcept
{
    _exit(0);
}

} // namespace

void refuse_downloads(const Library& library)
{
    using Hook = int(void*, unsigned int, const Value*, void*);
    using AddHook = unsigned long(unsigned int, unsigned int, Hook*, const void*, void*);
    const unsigned long widget = function_of<unsigned long()>(library, "gtk_widget_get_type")();
    function_of<void*(unsigned long)>(library, "g_type_class_ref")(widget);
    const unsigned int signal = function_of<unsigned int(const char*, unsigned long)>(
        library, "g_signal_lookup")("parent-set", widget);
    function_of<AddHook>(library, "g_signal_add_emission_hook")(
        signal, 0, parent_set_cb, &library, nullptr);
}

void make_private_storage(const Library& library, const char* program)
{
    for (const char* parent : {"g_get_user_data_dir", "g_get_user_cache_dir"}) {
        char path[PATH_MAX];
        const int length = std::snprintf(
            path, sizeof path, "%s/%s", function_of<const char*()>(library, parent)(), program);
        if (length < PATH_MAX) {
            function_of<int(const char*, int)>(library, "g_mkdir_with_parents")(path, 0700);
        }
    }
}

void end_with(const Library& library, int caller)
{
    using Watch = unsigned int(int, unsigned int, int (*)(int, unsigned int, void*), void*);
    if (caller <= 0) {
        return;
    }
    const long descriptor = syscall(SYS_pidfd_open, caller, 0);
    if (descriptor >= 0) {
        constexpr unsigned int kReadable = 1;
        function_of<Watch>(library, "g_unix_fd_add")(
            static_cast<int>(descriptor), kReadable, caller_ended_cb, nullptr);
    } else if (errno == ESRCH) {
        _exit(0);
    }
}
