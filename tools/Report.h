// Report.h: what a tool finds, one line each, as text or as JSON.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

enum class Level : char { ok = 'O', note = 'N', wrong = 'W' };

struct Finding {
    Level level;
    std::string subject;
    std::string text;
};

/// Collects findings in their order.
class Report {
public:
    /// copy  zeroes that every finding is also written to at once, for a process that may not live
    ///       to hand its report over; empty for none
    explicit Report(std::span<char> copy = {})
        : m_copy(copy)
    {
    }

    void add(Level level, std::string_view subject, std::string_view text);
    void ok(std::string_view subject, std::string_view text) { add(Level::ok, subject, text); }
    void note(std::string_view subject, std::string_view text) { add(Level::note, subject, text); }
    void wrong(std::string_view subject, std::string_view text)
    {
        add(Level::wrong, subject, text);
    }

    /// Adds the findings that a report with this copy wrote to it.
    void add_copy(std::span<const char> copy);

    bool any_wrong() const;

    /// Whether there is a finding about this subject.
    bool has(std::string_view subject) const;

    /// Lines of the form "WRONG subject: text".
    std::string plain() const;

    /// One object: "name" with `value`, "wrong", and the list "findings".
    std::string json(std::string_view name, std::string_view value) const;

private:
    std::vector<Finding> m_findings;
    std::span<char> m_copy; // what is left of it
};

/// Writes to standard output; false when that fails.
bool print(const std::string& text);

/// Whether the bytes are UTF-8.
bool is_utf8(std::string_view text);

/// The text on one line, safe for a terminal: control characters, those that break lines or turn
/// the direction of text, and bytes that are not UTF-8 as \xNN, and cut off where it grows long.
std::string escaped(std::string_view text);
