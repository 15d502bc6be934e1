// Texts.h: what the host says about itself.
#pragma once

#include "webapp/Options.h"

#include <array>

constexpr char kVersion[] = "tovik " TOVIK_VERSION "\n";

constexpr char kHelpStart[] = R"(Usage: tovik [OPTION]... [ANY://URL?QUERY]

Shows one page in a window and writes the page's answer to a file.

)";

constexpr char kHelpEnd[] = R"(
A value never begins with "-". The query of the first argument that holds "://" is passed on to
the page.

Exit status: 0 the window was shown and is gone, whatever the answer; 1 the display was lost;
2 the library cannot be loaded, or not from this place; 3 there is no display. The answer stands
in FILE alone; CKR_CANCEL is a closed window. With --print it is 1 when the answer is CKR_CANCEL or
there is none, 2 beside --help and --version, and FILE may be left out.
)";

/// A text put together while compiling; one that does not fit does not compile.
class HelpText {
public:
    constexpr void add(std::string_view text)
    {
        for (const char c : text) {
            m_text[m_length++] = c;
            m_column = c == '\n' ? 0 : m_column + 1;
        }
    }

    /// Adds lines in the column beside the options' names.
    constexpr void add_beside(std::string_view lines)
    {
        for (const char c : lines) {
            while (c != '\n' && m_column < 19) {
                add(" ");
            }
            add({&c, 1});
        }
    }

    constexpr const char* c_str() const { return m_text.data(); }

private:
    std::array<char, 4096> m_text = {};
    std::size_t m_length = 0;
    std::size_t m_column = 0;
};

consteval HelpText help_text()
{
    HelpText text;
    text.add(kHelpStart);
    for (const Option& option : kOptions) {
        text.add("  ");
        text.add(option.name);
        text.add(" ");
        text.add(option.value);
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

inline constexpr HelpText kHelpText = help_text();
inline constexpr const char* kHelp = kHelpText.c_str();
