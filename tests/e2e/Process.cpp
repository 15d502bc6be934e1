#include "tests/e2e/Process.h"

#include <csignal>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace {

std::vector<char*> pointers_to(const std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Process::Process(const std::vector<std::string>& arguments, const Environment& environment,
    const std::string& outputFile, const std::string& errorFile, const std::string& program,
    const std::string& directory)
{
    Environment all;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        all[text.substr(0, text.find('='))] = text.substr(text.find('=') + 1);
    }
    for (const auto& [name, value] : environment) {
        all[name] = value;
    }
    std::vector<std::string> entries;
    for (const auto& [name, value] : all) {
        if (value != "(unset)") {
            entries.push_back(name + "=" + value);
        }
    }
    const std::vector<char*> argv = pointers_to(arguments);
    const std::vector<char*> envp = pointers_to(entries);
    const char* file = program.empty() ? argv[0] : program.c_str();
    m_pid = fork();
    if (m_pid == 0) {
        setpgid(0, 0);
        dup2(open(outputFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
        dup2(open(errorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
        if (chdir(directory.c_str()) == 0) {
            execvpe(file, argv.data(), envp.data());
        }
        _exit(127);
    }
}

Process::Process(Process&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1))
{
}

Process& Process::operator=(Process&& other) noexcept
{
    std::swap(m_pid, other.m_pid);
    return *this;
}

Process::~Process()
{
    if (m_pid > 0) {
        kill(-m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
}

std::optional<int> Process::wait(int seconds)
{
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, m_pid, 0));
    pollfd waiting = {descriptor, POLLIN, 0};
    const int ready = poll(&waiting, 1, seconds * 1000);
    close(descriptor);
    if (ready != 1) {
        return std::nullopt;
    }
    int status = 0;
    waitpid(std::exchange(m_pid, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string output_of(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string text;
    char block[4096];
    while (const std::size_t length = fread(block, 1, sizeof block, pipe.get())) {
        text.append(block, length);
    }
    return text;
}
