#include "util/FreshProcess.h"

#include "util/Arguments.h"
#include "util/Owned.h"

#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

using OwnedDirectory = std::unique_ptr<DIR, ReleaseWith<closedir>>;

/// Set by note_inherited_descriptors().
constinit std::vector<int> g_Inherited;

void reset_signals()
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &action, nullptr);
    }
    // After the actions: a pending signal must not run a handler of this process in the child.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void keep_inherited_descriptors()
{
    // Called by its number, as some C libraries have no wrapper.
    if (syscall(SYS_close_range, STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC) != 0) {
        return;
    }
    for (const int descriptor : g_Inherited) {
        fcntl(descriptor, F_SETFD, 0);
    }
}

} // namespace

void note_inherited_descriptors()
{
    g_Inherited.clear();
    const OwnedDirectory directory(opendir("/proc/self/fd"));
    if (!directory) {
        return;
    }
    while (const dirent* entry = readdir(directory.get())) {
        const int descriptor = static_cast<int>(string2number(entry->d_name));
        if (fcntl(descriptor, F_GETFD) == 0) {
            g_Inherited.push_back(descriptor);
        }
    }
}

void become_fresh_process()
{
    setsid();
    reset_signals();
    keep_inherited_descriptors();
}
