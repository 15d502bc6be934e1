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

/// Of the memory that both processes see: the text of the step, and then the findings.
constexpr std::size_t kStepCapacity = 256;
constexpr std::size_t kMemory = std::size_t {1} << 27U;

constexpr char kEnd[] = "the end of the process (finalising, or static objects)";

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

[[noreturn]] void run_child(Step& step, const std::function<void(Step&, Report&)>& work)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    const rlimit noCore = {};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Report report(step.findings());
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
        kill(-child, SIGKILL);
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
    : m_memory(static_cast<char*>(mmap(nullptr, kMemory, PROT_READ | PROT_WRITE,
        MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)))
{
    if (m_memory == MAP_FAILED) {
        fail("mmap");
    }
    begin("the start of the process");
}

Step::~Step()
{
    munmap(m_memory, kMemory);
}

void Step::begin(const std::string& what)
{
    std::snprintf(m_memory, kStepCapacity, "%s", what.c_str());
}

std::string Step::current() const
{
    return {m_memory, strnlen(m_memory, kStepCapacity)};
}

std::span<char> Step::findings() const
{
    return {m_memory + kStepCapacity, kMemory - kStepCapacity};
}

std::string run_in_child(
    unsigned int seconds, Report& report, const std::function<void(Step&, Report&)>& work)
{
    Step step;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        run_child(step, work);
    }
    if (child < 0) {
        fail("fork");
    }
    std::string end = end_of(child, seconds, step);
    report.add_copy(step.findings());
    return end;
}
