#include "host/DialogProcess.h"

#include "host/Library.h"
#include "util/Owned.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <initializer_list>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Milliseconds between asking a dialog to end and killing it.
constexpr int kGrace = 2000;

struct RunningDialog {
    const char* file;
    pid_t dialog; // the process that the dialog is in
    DialogEnd end;
};

/// The signals that run_dialog() waits for: SIGCHLD, and those that end a dialog unless this
/// process ignores them.
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

/// Standard output if that is a pipe or a socket, whose reader can go away; else -1.
int watched_output()
{
    struct stat status = {};
    const bool hasReader = fstat(STDOUT_FILENO, &status) == 0
        && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
    return hasReader ? STDOUT_FILENO : -1;
}

[[noreturn]] void become_dialog(
    int argc, char** argv, DialogMain dialog, pid_t parent, const sigset_t& mask)
{
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    // Nobody would read the answer of a dialog that outlives its caller.
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

/// Reads the first line of the file, 63 bytes of it at most; false when there is none.
bool read_line(const char* path, char (&text)[64])
{
    const OwnedFile file(std::fopen(path, "r"));
    return file && std::fgets(text, sizeof text, file.get()) != nullptr;
}

/// The child that runs a program of this name, or 0. Names are compared and not files, because an
/// update may have replaced the file; a browser that the dialog has opened has another name.
pid_t restarted_dialog()
{
    char own[64] = "";
    char name[64] = "";
    char word[32];
    char path[64];
    pid_t found = 0;
    read_line("/proc/self/comm", own);
    const OwnedFile children(std::fopen("/proc/thread-self/children", "r"));
    while (children && std::fscanf(children.get(), "%31s", word) == 1) {
        std::snprintf(path, sizeof path, "/proc/%s/comm", word);
        if (read_line(path, name) && std::strcmp(name, own) == 0) {
            found = static_cast<pid_t>(std::strtol(word, nullptr, 10));
        }
    }
    return found;
}

/// Reaps every child that has ended and notes how the dialog's process did; true when it is one of
/// them.
bool reap_children(RunningDialog& run)
{
    bool ended = false;
    int status = 0;
    for (pid_t child = 0; (child = waitpid(-1, &status, WNOHANG)) > 0;) {
        if (child == run.dialog) {
            ended = true;
            run.end.killed = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
            run.end.status = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
        }
    }
    return ended;
}

/// Follows a dialog whose process has ended well and left no answer into the process of the
/// restarted program; false when there is none to follow.
bool follow_restart(RunningDialog& run)
{
    if (run.end.killed != 0 || run.end.status != 0 || is_filled(run.file)) {
        return false;
    }
    run.dialog = restarted_dialog();
    if (run.dialog != 0 && run.end.request != 0) {
        kill(run.dialog, SIGTERM);
    }
    return run.dialog != 0;
}

void ask_to_end(RunningDialog& run, int request, int signal)
{
    run.end.request = request;
    kill(run.dialog, signal);
}

/// Waits until the dialog is over; `signals` is a descriptor for those awaited.
void wait_for(RunningDialog& run, int signals)
{
    pollfd sources[] = {{signals, POLLIN, 0}, {watched_output(), 0, 0}};
    for (bool over = false; !over;) {
        const int ready = poll(sources, 2, run.end.request == 0 ? -1 : kGrace);
        if (ready == 0) {
            kill(run.dialog, SIGKILL);
        }
        if (ready > 0 && sources[1].revents != 0) {
            sources[1].fd = -1;
            ask_to_end(run, SIGPIPE, SIGTERM);
        }
        signalfd_siginfo info = {};
        if (ready > 0 && sources[0].revents != 0
            && read(signals, &info, sizeof info) == sizeof info) {
            const int signal = static_cast<int>(info.ssi_signo);
            if (signal == SIGCHLD) {
                over = reap_children(run) && !follow_restart(run);
            } else {
                ask_to_end(run, signal, signal);
            }
        }
    }
}

} // namespace

DialogEnd run_dialog(int argc, char** argv, const char* file, DialogMain dialog)
{
    RunningDialog run = {file, 0, {0, 0, 0}};
    const sigset_t awaited = awaited_signals();
    const OwnedDescriptor signals(signalfd(-1, &awaited, SFD_CLOEXEC));
    const pid_t parent = getpid();
    sigset_t mask;
    sigprocmask(SIG_BLOCK, &awaited, &mask);
    // A process whose parent ends becomes a child of this one, a restarted program among them.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    run.dialog = signals ? fork() : -1;
    if (run.dialog == 0) {
        become_dialog(argc, argv, dialog, parent, mask);
    }
    if (run.dialog > 0) {
        wait_for(run, signals.get());
    } else {
        std::fprintf(stderr, "tovik: cannot start a dialog: %s\n", std::strerror(errno));
        run.end.status = kCannotStart;
    }
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    return run.end;
}

void end_by(int signal)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    std::raise(signal);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}
