#include "host/Line.h"

#include "util/Characters.h"

#include <cstdio>
#include <unistd.h>

namespace {

constexpr std::size_t kLongest = 4000;
constexpr char kCut[] = " ...";

class Line {
public:
    void add(std::string_view text)
    {
        while (!text.empty() && m_length < kLongest) {
            const Character character = first_character(text);
            const bool plain = character.length != 0 && !is_control(character.value);
            const std::string_view bytes
                = text.substr(0, std::max<std::size_t>(character.length, 1));
            for (const char byte : bytes) {
                m_length += static_cast<std::size_t>(std::snprintf(m_text + m_length, 5,
                    plain ? "%c" : "\\x%.2X", static_cast<unsigned char>(byte)));
            }
            text.remove_prefix(bytes.size());
        }
        if (!text.empty()) {
            m_end = kCut;
        }
    }

    void print() { std::fprintf(stderr, "%.*s%s\n", static_cast<int>(m_length), m_text, m_end); }

private:
    char m_text[kLongest + 20]; // the last character may have four bytes of "\xHH"
    std::size_t m_length = 0;
    const char* m_end = "";
};

} // namespace

void print_line(std::initializer_list<std::string_view> parts)
{
    Line line;
    for (const std::string_view part : parts) {
        line.add(part);
    }
    line.print();
}
