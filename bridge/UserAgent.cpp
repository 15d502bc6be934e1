#include "bridge/UserAgent.h"

#include "util/StringUtil.h"

namespace {

bool is_blank(char c)
{
    return c == ' ' || c == '\t';
}

bool is_token_character(char c)
{
    const bool alphanumeric
        = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    return alphanumeric || tovik::_strchr("!#$%&'*+-.^_`|~", c) != nullptr;
}

/// Moves past a token; false when no token begins here.
bool skip_token(const char*& at)
{
    const char* start = at;
    while (is_token_character(*at)) {
        ++at;
    }
    return at != start;
}

bool skip_product(const char*& at)
{
    return skip_token(at) && (*at != '/' || skip_token(++at));
}

/// Moves past a character that a comment may hold: a tab, or U+0020 to U+00FF without U+007F.
bool skip_comment_character(const char*& at)
{
    const auto first = static_cast<unsigned char>(*at);
    const bool latin = first == 0xC2 || first == 0xC3;
    if (latin ? (static_cast<unsigned char>(at[1]) & 0xC0U) != 0x80
              : first != '\t' && (first < 0x20 || first > 0x7E)) {
        return false;
    }
    at += latin ? 2 : 1;
    return true;
}

/// Moves past the comment that begins here. A backslash lets the next character stand for itself.
bool skip_comment(const char*& at)
{
    unsigned int depth = 0;
    do {
        if (*at == '\\') {
            ++at;
        } else if (*at == '(') {
            ++depth;
        } else if (*at == ')') {
            --depth;
        }
        if (!skip_comment_character(at)) {
            return false;
        }
    } while (depth > 0);
    return true;
}

} // namespace

const char* wa_user_agent_fault(const char* text)
{
    const char* at = text;
    bool accepted = skip_product(at);
    while (accepted && *at != 0) {
        while (is_blank(*at)) {
            ++at;
        }
        accepted = *at == '(' ? skip_comment(at) : skip_product(at);
    }
    return accepted ? nullptr : at;
}
