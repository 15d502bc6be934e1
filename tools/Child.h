// Child.h: work with foreign code in a process of its own, so that a crash or a hang is something
// to report and not the end of the tool.
#pragma once

#include "tools/Report.h"

#include <functional>
#include <span>
#include <string>

/// What the child is doing and has found, in memory that both processes see: foreign code may close
/// any descriptor.
class Step {
public:
    Step();
    ~Step();
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;

    /// Called in the child before each thing that may not return.
    void begin(const std::string& what);

    std::string current() const;

    /// Zeroes, for the copy of the report.
    std::span<char> findings() const;

private:
    char* m_memory;
};

/// Runs `work` in a child process that ends by exit(), and adds to `report` what it reported until
/// then. Its standard output goes to standard error, and it leads a process group of its own, so
/// that it signals and leaves behind nobody else. Returns the empty string, or how it ended
/// instead and in which step: by a signal, with a status of its own, or not within `seconds`.
std::string run_in_child(
    unsigned int seconds, Report& report, const std::function<void(Step&, Report&)>& work);
