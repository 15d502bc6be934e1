// Process.h: child processes with a deadline; whatever still runs is ended with its owner.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

class Process {
public:
    using Environment = std::map<std::string, std::string>;

    Process() = default;
    /// Starts `arguments`, the first of which is searched on the PATH, in a process group of its
    /// own. Standard output and error go to these files, or nowhere; `program` is executed in
    /// place of the first argument when it is not empty.
    Process(const std::vector<std::string>& arguments, const Environment& environment,
        const std::string& outputFile = "/dev/null", const std::string& errorFile = "/dev/null",
        const std::string& program = "", const std::string& directory = "/");
    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    ~Process();

    pid_t pid() const { return m_pid; }
    /// Exit status, or 128 and the signal's number; nothing when it still runs after `seconds`.
    std::optional<int> wait(int seconds);

private:
    pid_t m_pid = -1;
};

/// What a shell command prints to standard output.
std::string output_of(const std::string& command);
