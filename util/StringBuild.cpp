// The functions of StringUtil.h that make new strings.
#include "util/StringUtil.h"

#include "util/MemoryUtil.h"

#include <algorithm>
#include <cstdint>

namespace tovik {
namespace {

/// New string of the `length` characters at `s`.
char* copied(const char* s, std::size_t length)
{
    char* text = new char[length + 1];
    _memcpy(text, s, length);
    text[length] = 0;
    return text;
}

/// Units of an array for `n` characters and a terminator. The sum does not wrap: a count that no
/// array can have stays one, also where half of the addresses could be allocated.
std::size_t bounded_capacity(std::size_t n)
{
    return std::min<std::size_t>(n, SIZE_MAX - 1) + 1;
}

char* concatenated(const char* const* parts, std::size_t count)
{
    std::size_t length = 0;
    for (std::size_t i = 0; i < count; ++i) {
        length += _strlen(parts[i]);
    }
    char* text = new char[length + 1];
    char* end = text;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t partLength = _strlen(parts[i]);
        _memcpy(end, parts[i], partLength);
        end += partLength;
    }
    *end = 0;
    return text;
}

/// Length of the span at the start of `text`, nested spans included; 0 when it does not close.
std::size_t nested_span(const char* text, const char* open, const char* close)
{
    const std::size_t openLength = _strlen(open);
    const std::size_t closeLength = _strlen(close);
    std::size_t depth = 0;
    for (std::size_t i = 0; text[i] != 0; ++i) {
        if (_strncmp(text + i, open, openLength) == 0) {
            ++depth;
        } else if (_strncmp(text + i, close, closeLength) == 0) {
            if (depth == 1) {
                return i + closeLength;
            }
            --depth;
        }
    }
    return 0;
}

} // namespace

char* _strnew(const char* s)
{
    return s == nullptr ? nullptr : copied(s, _strlen(s));
}
wchar_t* _strnew(const wchar_t* s)
{
    return s == nullptr ? nullptr : _strnew(s, _strlen(s));
}

char* _strnew(const char* s, std::size_t n)
{
    return s == nullptr ? nullptr : _strncpy(new char[bounded_capacity(n)], s, n);
}

wchar_t* _strnew(const wchar_t* s, std::size_t n)
{
    return s == nullptr ? nullptr : _strncpy(new wchar_t[bounded_capacity(n)], s, n);
}

char* _strnew(const char* text, const char* open, const char* close)
{
    const char* start = _strstr(text, open);
    if (start == nullptr || _strlen(close) == 0) {
        return nullptr;
    }
    if (_strcmp(open, close) == 0) {
        const char* end = _strstr(start + _strlen(open), close);
        return end == nullptr
            ? nullptr
            : copied(start, static_cast<std::size_t>(end - start) + _strlen(close));
    }
    const std::size_t length = nested_span(start, open, close);
    return length == 0 ? nullptr : copied(start, length);
}

char* _strconcat(const char* a, const char* b)
{
    const char* parts[] = {a, b};
    return concatenated(parts, 2);
}

char* _strconcat(const char* a, const char* b, const char* c)
{
    const char* parts[] = {a, b, c};
    return concatenated(parts, 3);
}

char* _strconcat(const char* a, const char* b, const char* c, const char* d)
{
    const char* parts[] = {a, b, c, d};
    return concatenated(parts, 4);
}

char* _strconcat(const char* a, const char* b, const char* c, const char* d, const char* e)
{
    const char* parts[] = {a, b, c, d, e};
    return concatenated(parts, 5);
}

char* _stradd(char* s, const char* separator, const char* add)
{
    if (add == nullptr) {
        return s;
    }
    if (s == nullptr) {
        return _strnew(add);
    }
    char* joined = _strconcat(s, separator, add);
    delete[] s;
    return joined;
}

char* _strfind(char* text, const char* begin, const char* end, unsigned char cut)
{
    char* start = _strstr(text, begin);
    if (start == nullptr) {
        return nullptr;
    }
    char* inside = start + _strlen(begin);
    char* stop = _strstr(inside, end);
    if (stop == nullptr) {
        return nullptr;
    }
    char* found = copied(inside, static_cast<std::size_t>(stop - inside));
    if (cut != 0) {
        char* rest = stop + _strlen(end);
        _memmove(start, rest, _strlen(rest) + 1);
    }
    return found;
}

char* _strfind(char* text, const char* begin, const char* end)
{
    return _strfind(text, begin, end, 0);
}

} // namespace tovik
