#include "tools/Child.h"

#include <cerrno>
#include <charconv>
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

/// Bytes of the shared memory: first the text of the step, then the findings.
constexpr std::size_t kStepCapacity = 256;
constexpr std::size_t kMemory = std::size_t {1} << 27U;

constexpr char kEnd[] = "the end of the process (finalising, or static objects)";

[[noreturn]] void fail(const char* what)
{
    throw std::system_error(errno, std::generic_category(), what);
}

/// New zeroed memory that a child process will share.
char* map_shared()
{
    void* memory = mmap(nullptr, kMemory, PROT_READ | PROT_WRITE,
        MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED) {
        fail("mmap");
    }
    return static_cast<char*>(memory);
}

[[noreturn]] void run_child(
    ChildProgress& progress, const std::function<void(ChildProgress&, Report&)>& work)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    const rlimit noCore = {};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    Report report(progress.findings());
    work(progress, report);
    progress.begin(kEnd);
    std::exit(0); // NOLINT(concurrency-mt-unsafe): what plug-ins do at exit is part of the work
}

/// Waits until the process, a descriptor, has ended, or for that many seconds. On a terminal it
/// says after two seconds what the child is doing. Returns what poll() does.
int await_end(int process, unsigned int seconds, const ChildProgress& progress)
{
    constexpr unsigned int kSilent = 2;
    const bool onTerminal = isatty(STDERR_FILENO) == 1;
    pollfd ended = {process, POLLIN, 0};
    int ready = 0;
    for (unsigned int passed = 0; passed < seconds && ready == 0; ++passed) {
        if (onTerminal && passed >= kSilent) {
            std::fprintf(stderr, "%s%u s of %u s: %s", kClearLine, passed, seconds,
                escaped(progress.current()).c_str());
        }
        ready = poll(&ended, 1, 1000);
    }
    if (onTerminal) {
        std::fputs(kClearLine, stderr);
    }
    return ready;
}

/// How the child ended; empty when it ended by exit(0) after its work.
std::string end_of(pid_t child, unsigned int seconds, const ChildProgress& progress)
{
    // Not every version of the C library declares pidfd_open() for C++.
    const OwnedDescriptor process(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
    const int ready = process ? await_end(process.get(), seconds, progress) : -1;
    if (ready == 0) {
        kill(child, SIGKILL);
        kill(-child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string where = " in " + progress.current();
    if (ready == 0) {
        return "did not return within " + std::to_string(seconds) + " s" + where;
    }
    if (WIFSIGNALED(status)) {
        const int number = WTERMSIG(status);
        return "signal " + std::to_string(number) + " (" + strsignal(number) + ")" + where;
    }
    if (WEXITSTATUS(status) != 0 || progress.current() != kEnd) {
        return "ended the process with status " + std::to_string(WEXITSTATUS(status)) + where;
    }
    return "";
}

} // namespace

ChildProgress::ChildProgress()
    : m_memory(map_shared())
{
    begin("the start of the process");
}

void ChildProgress::unmap(char* memory) noexcept
{
    munmap(memory, kMemory);
}

void ChildProgress::begin(const std::string& step)
{
    std::snprintf(m_memory.get(), kStepCapacity, "%s", step.c_str());
}

std::string ChildProgress::current() const
{
    return {m_memory.get(), strnlen(m_memory.get(), kStepCapacity)};
}

std::span<char> ChildProgress::findings() const
{
    return {m_memory.get() + kStepCapacity, kMemory - kStepCapacity};
}

bool read_limit(std::string_view text, unsigned int& limit)
{
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, limit);
    return error == std::errc() && rest == end && limit > 0 && limit <= 3600;
}

std::string run_in_child(
    unsigned int seconds, Report& report, const std::function<void(ChildProgress&, Report&)>& work)
{
    ChildProgress progress;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        run_child(progress, work);
    }
    if (child < 0) {
        fail("fork");
    }
    std::string end = end_of(child, seconds, progress);
    report.add_copy(progress.findings());
    return end;
}
