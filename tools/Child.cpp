#include "tools/Child.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr char kEnd[] = "the end of the process (static objects, or finalising behind them)";

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

[[noreturn]] void run_child(int copy, Step& step, const std::function<void(Step&, Report&)>& work)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit noCore = {};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Report report(copy);
    work(step, report);
    step.begin(kEnd);
    std::exit(0); // NOLINT(concurrency-mt-unsafe): what plug-ins do at exit is part of the work
}

/// How the child ended, the empty string when all is well.
std::string end_of(pid_t child, unsigned int seconds, const Step& step)
{
    // The C library's header for this call is not one for C++ everywhere.
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    pollfd ended = {descriptor, POLLIN, 0};
    const int ready = descriptor < 0 ? -1 : poll(&ended, 1, static_cast<int>(seconds) * 1000);
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (ready == 0) {
        kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string where = " in " + step.current();
    if (ready == 0) {
        return "did not return within " + std::to_string(seconds) + " s" + where;
    }
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
        return "signal " + std::to_string(number) + " (" + strsignal(number) + ")" + where;
    }
    if (WEXITSTATUS(status) != 0 || step.current() != kEnd) {
        return "ended the process with status " + std::to_string(WEXITSTATUS(status)) + where;
    }
    return "";
}

} // namespace

Step::Step()
    : m_text(static_cast<char*>(
        mmap(nullptr, kCapacity, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
{
    if (m_text == MAP_FAILED) {
        fail("mmap");
    }
    begin("the start of the process");
}

Step::~Step()
{
    munmap(m_text, kCapacity);
}

void Step::begin(const std::string& what)
{
    std::snprintf(m_text, kCapacity, "%s", what.c_str());
}

std::string Step::current() const
{
    return {m_text, strnlen(m_text, kCapacity)};
}

std::string run_in_child(
    unsigned int seconds, Report& report, const std::function<void(Step&, Report&)>& work)
{
    Step step;
    const int copy = memfd_create("findings", MFD_CLOEXEC);
    if (copy < 0) {
        fail("memfd_create");
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        run_child(copy, step, work);
    }
    if (child < 0) {
        fail("fork");
    }
    std::string end = end_of(child, seconds, step);
    report.add_copy(copy);
    close(copy);
    return end;
}
