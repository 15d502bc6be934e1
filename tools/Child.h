// Child.h: runs foreign code in a child process, so that a crash or a hang becomes a finding and
// does not end the tool.
#pragma once

#include "tools/Report.h"
#include "util/Owned.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>

/// What the child is doing and has found, in shared memory: foreign code may close any descriptor,
/// that of a pipe too.
class ChildProgress {
public:
    ChildProgress();

    /// Names the step that the child begins; called before each one that may not return.
    void begin(const std::string& step);

    /// The step begun last.
    std::string current() const;

    /// Memory for the copy of the report, zeroes at first.
    std::span<char> findings() const;

private:
    static void unmap(char* memory) noexcept;

    std::unique_ptr<char, ReleaseWith<unmap>> m_memory;
};

/// Seconds that a child is given unless "--limit" says otherwise.
constexpr unsigned int kDefaultLimit = 20;

/// What removes the line on a terminal that says what a child is doing.
constexpr char kClearLine[] = "\r\033[K";

/// Reads the value of "--limit", a whole decimal number from 1 to 3600; false for any other text.
bool read_limit(std::string_view text, unsigned int& limit);

/// Runs `work` in a child process that ends by exit(), and adds the findings of the child to
/// `report`. The child's standard output goes to standard error. The child leads a process group of
/// its own, so that a signal to its group reaches no other process, and a child that hangs is
/// killed with its group. On a terminal, standard error shows the step that it has begun after two
/// seconds.
/// Returns the empty string when the child ended by exit(0) after `work`; else how it ended and in
/// which step: by a signal, with a status of its own, or not within `seconds`.
std::string run_in_child(
    unsigned int seconds, Report& report, const std::function<void(ChildProgress&, Report&)>& work);
