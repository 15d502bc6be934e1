#include "host/DialogProcess.h"

#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kCannotStart = 2;

/// The signals that run_dialog() waits for; those that the caller has this process ignore stay so.
sigset_t awaited_signals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action = {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&signals, signal);
        }
    }
    return signals;
}

[[noreturn]] void become_dialog(
    int argc, char** argv, Dialog dialog, pid_t parent, const sigset_t& mask)
{
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    // Nobody would take the answer of a dialog that outlives its caller.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        _exit(kCannotStart);
    }
    dup2(STDERR_FILENO, STDOUT_FILENO);
    std::exit(dialog(argc, argv));
}

bool is_filled(const char* file)
{
    struct stat status = {};
    return stat(file, &status) == 0 && status.st_size > 0;
}

/// Whether the process runs this program; a browser that a dialog has opened does not.
bool runs_this_program(pid_t process)
{
    char link[32];
    char own[PATH_MAX];
    char other[PATH_MAX];
    std::snprintf(link, sizeof link, "/proc/%d/exe", process);
    const ssize_t length = readlink("/proc/self/exe", own, sizeof own);
    return length > 0 && readlink(link, other, sizeof other) == length
        && std::memcmp(own, other, static_cast<std::size_t>(length)) == 0;
}

/// Sends the signal to the dialog, which after a restart is another child than the first.
void signal_dialog(int signal)
{
    FILE* children = std::fopen("/proc/thread-self/children", "r");
    char word[16];
    while (children != nullptr && std::fscanf(children, "%15s", word) == 1) {
        const auto child = static_cast<pid_t>(std::strtol(word, nullptr, 10));
        if (runs_this_program(child)) {
            kill(child, signal);
        }
    }
    if (children != nullptr) {
        std::fclose(children);
    }
}

/// Takes note of every child that has ended. True when the dialog is over: it failed, the answer
/// is there, or no process is left that could give one.
bool is_over(pid_t first, const char* file, int& status)
{
    int ended = 0;
    for (pid_t child = 0; (child = waitpid(-1, &ended, WNOHANG)) != 0;) {
        if (child < 0) {
            return true;
        }
        if (child == first && (!WIFEXITED(ended) || WEXITSTATUS(ended) != 0)) {
            status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 0;
            return true;
        }
        if (is_filled(file)) {
            return true;
        }
    }
    return false;
}

} // namespace

DialogEnd run_dialog(int argc, char** argv, const char* file, Dialog dialog)
{
    // Ignored, it would not be sent.
    std::signal(SIGCHLD, SIG_DFL);
    const sigset_t signals = awaited_signals();
    sigset_t mask;
    sigprocmask(SIG_BLOCK, &signals, &mask);
    // What the dialog leaves behind becomes a child of this process.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child == 0) {
        become_dialog(argc, argv, dialog, parent, mask);
    }
    DialogEnd end = {0, 0};
    while (!is_over(child, file, end.status)) {
        int signal = 0;
        if (sigwait(&signals, &signal) == 0 && signal != SIGCHLD) {
            end.signal = signal;
            signal_dialog(signal);
        }
    }
    return end;
}

void raise_again(int signal)
{
    if (signal != 0) {
        const sigset_t signals = awaited_signals();
        std::raise(signal);
        sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    }
}
