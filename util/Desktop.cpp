#include "util/Desktop.h"

#include "util/BoundedPath.h"
#include "util/FreshProcess.h"
#include "util/Layout.h"

#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char* kOpeners[]
    = {"/usr/bin/xdg-open", "/usr/bin/gnome-open", "/usr/bin/kde-open", "/usr/bin/open"};

/// 100 seconds in all.
constexpr ScriptWait kScriptWait = {100000, 999000, 100};

/// Starts a program in a session of its own, with one argument or, for null, none. Returns its
/// process id, or -1 when no process can be made.
pid_t start(const char* program, const char* argument)
{
    const pid_t child = fork();
    if (child == 0) {
        become_fresh_process();
        execl(program, program, argument, static_cast<char*>(nullptr));
        _exit(0);
    }
    return child;
}

} // namespace

void wa_open_url(const char* url)
{
    open_url_with(kOpeners, url);
}

void wa_call_script(const char* name, unsigned char search)
{
    char path[kScriptCapacity];
    const bool found = search == 0 ? find_script(nullptr, nullptr, name, path)
                                   : find_script(std::getenv("HOME"), "/etc/tovik/", name, path);
    if (found) {
        run_script(path, kScriptWait);
    }
}

void open_url_with(std::span<const char* const> openers, const char* url)
{
    for (const char* opener : openers) {
        if (osFileExist(opener) && start(opener, url) > 0) {
            return;
        }
    }
}

bool find_script(
    const char* home, const char* system, const char* name, char (&path)[kScriptCapacity])
{
    if (home != nullptr
        && BoundedPath(path).append(home).append("/.tovik/").append(name).exists()) {
        return true;
    }
    if (system != nullptr && BoundedPath(path).append(system).append(name).exists()) {
        return true;
    }
    return BoundedPath(path).append(".").append(name).fits();
}

void run_script(const char* path, const ScriptWait& wait)
{
    const pid_t child = start(path, nullptr);
    if (child < 0) {
        return;
    }
    usleep(wait.first);
    for (int poll = 0; poll < wait.polls; ++poll) {
        if (waitpid(child, nullptr, WNOHANG) > 0) {
            return;
        }
        usleep(wait.between);
    }
}
