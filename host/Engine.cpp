#include "host/Engine.h"

#include <cerrno>
#include <climits>
#include <initializer_list>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// Handler of "download-started".
/// cancel  address of webkit_download_cancel()
void download_started_cb(void*, void* download, void* cancel) noexcept
{
    reinterpret_cast<void (*)(void*)>(cancel)(download);
}

int main_loop_started_cb(void* data) noexcept
{
    const Library& library = *static_cast<const Library*>(data);
    auto* cancel = function_of<void(void*)>(library, "webkit_download_cancel");
    void* context = function_of<void*()>(library, "webkit_web_context_get_default")();
    connect_signal(
        library, context, "download-started", download_started_cb, reinterpret_cast<void*>(cancel));
    return 0;
}

int caller_ended_cb(int, unsigned int, void*) noexcept
{
    _exit(0);
}

} // namespace

void refuse_downloads(Library& library)
{
    // The main loop calls it before what the engine has waiting. If the host created the context
    // earlier, scripts and a restarted program would inherit the files that the engine opens for
    // it.
    using Add = unsigned int(int, int (*)(void*), void*, void (*)(void*));
    constexpr int kHighPriority = -100;
    function_of<Add>(library, "g_idle_add_full")(
        kHighPriority, main_loop_started_cb, &library, nullptr);
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
