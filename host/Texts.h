// Texts.h: the texts of "--help" and "--version".
#pragma once

#include "webapp/Options.h"

#include <array>

/// What "--version" prints.
constexpr char kVersion[] = "tovik " TOVIK_VERSION "\n";

/// What "--help" prints before the options.
constexpr char kHelpStart[] = R"(Usage: tovik [OPTION]... [ANY://URL?QUERY]

Shows one page in a window and writes the page's answer to a file.

)";

/// What "--help" prints after the options.
constexpr char kHelpEnd[] = R"(
A value never begins with "-". The query of the first argument that holds "://" is passed to the
page.

Exit status: 0 the window was shown and is gone, whatever the answer; 1 the display was lost;
2 the library cannot be loaded, or not from this place; 3 there is no display. The answer is in
FILE and not in the status; CKR_CANCEL is a closed window. With --print the status is 1 when the
answer is CKR_CANCEL or there is none, 2 with --help or --version, and 4 when the web process has
crashed and the window was closed; -store may be left out.
)";

/// A text that the compiler puts together; one that does not fit does not compile.
class HelpText {
public:
    /// Appends the text.
    constexpr void add(std::string_view text)
    {
        for (const char c : text) {
            m_text[m_length++] = c;
            m_column = c == '\n' ? 0 : m_column + 1;
        }
    }

    /// Appends lines, each indented to the column after the options' names.
    constexpr void add_beside(std::string_view lines)
    {
        for (const char c : lines) {
            while (c != '\n' && m_column < 19) {
                add(" ");
            }
            add({&c, 1});
        }
    }

    /// The text, NUL-terminated; it lives as long as this object.
    constexpr const char* c_str() const { return m_text.data(); }

private:
    std::array<char, 4096> m_text = {};
    std::size_t m_length = 0;
    std::size_t m_column = 0;
};

/// Puts the text of "--help" together from the table of options.
consteval HelpText help_text()
{
    HelpText text;
    text.add(kHelpStart);
    for (const Option& option : kOptions) {
        text.add("  ");
        text.add(option.name);
        // A value in brackets belongs to the same word.
        text.add(*option.value == '[' ? "" : " ");
        text.add(option.value);
        text.add(" ");
        text.add_beside(option.help);
        if (option.fallback != nullptr) {
            text.add(" (default ");
            text.add(option.fallback);
            text.add(")");
        }
        text.add("\n");
    }
    text.add(kHelpEnd);
    return text;
}

/// What "--help" prints.
inline constexpr HelpText kHelpText = help_text();
/// The same as a C string.
inline constexpr const char* kHelp = kHelpText.c_str();
