// Report.h: the findings of a tool, as lines of text or as JSON.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// How much a finding matters.
enum class Level : char { ok = 'O', note = 'N', wrong = 'W' };

/// One finding, escaped for a terminal.
struct Finding {
    Level level;
    std::string subject;
    std::string text;
};

/// Collects findings in their order.
class Report {
public:
    /// copy  zeroed memory to which every finding is also written at once, for a process that may
    /// end
    ///       before it can pass its report on; empty for none. A finding that does not fit is left
    ///       out
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

    /// Adds the findings that another report wrote to this copy.
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
    std::span<char> m_copy; // the part of it that is still free
};

/// Writes to standard output; false when that fails.
bool print(const std::string& text);

/// Whether the bytes are UTF-8.
bool is_utf8(std::string_view text);

/// The text on one line, safe for a terminal. Control characters, characters that break lines or
/// change the direction of text, and bytes that are not UTF-8 become \xNN. After 1000 bytes the
/// text is cut off, and its length follows.
std::string escaped(std::string_view text);
