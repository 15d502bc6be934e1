#include "util/Codecs.h"

#include "util/HexDigit.h"
#include "util/MemoryUtil.h"
#include "util/Owned.h"
#include "util/StringUtil.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

/// Six-bit values of the base64 alphabet, indexed by the low 7 bits of a character; else -1.
constexpr std::array<std::int32_t, 128> kBase64Values = [] {
    std::array<std::int32_t, 128> values {};
    values.fill(-1);
    std::int32_t next = 0;
    for (const char* c = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
         *c != 0; ++c) {
        values[static_cast<unsigned char>(*c)] = next++;
    }
    return values;
}();

std::int32_t base64_value(unsigned char c)
{
    return kBase64Values[c & 127U];
}

/// Values of the hexadecimal digits, -1 for other characters. A lookup costs the same for every
/// character; comparisons are slowest for a mixture of digits and letters.
constexpr std::array<signed char, 256> kHexValues = [] {
    std::array<signed char, 256> values {};
    for (std::size_t c = 0; c < values.size(); ++c) {
        values[c] = static_cast<signed char>(hex_digit(static_cast<char>(c)));
    }
    return values;
}();

int hex_value(char c)
{
    return kHexValues[static_cast<unsigned char>(c)];
}

/// Length of the text before the first `end` or the terminator.
std::size_t length_before(const char* text, char end)
{
    const char* stop = tovik::_strchr(text, end);
    return stop == nullptr ? tovik::_strlen(text) : static_cast<std::size_t>(stop - text);
}

/// Decodes groups of four characters in place, up to the first group that holds a character
/// outside the alphabet. Returns the number of characters read, each four of which gave three
/// bytes.
unsigned long decode_groups(unsigned char* data, unsigned long length)
{
    unsigned char* to = data;
    unsigned long i = 0;
    for (; length - i >= 4; i += 4) {
        const std::int32_t group = base64_value(data[i]) << 18 | base64_value(data[i + 1]) << 12
            | base64_value(data[i + 2]) << 6 | base64_value(data[i + 3]);
        if (group < 0) {
            break;
        }
        *to++ = static_cast<unsigned char>(group >> 16);
        *to++ = static_cast<unsigned char>(group >> 8);
        *to++ = static_cast<unsigned char>(group);
    }
    return i;
}

/// Decodes characters one by one up to the first "=" or `end`, skips those outside the alphabet,
/// and returns the end of the bytes written from `to` on.
unsigned char* decode_characters(
    const unsigned char* from, const unsigned char* end, unsigned char* to)
{
    std::uint32_t held = 0;
    unsigned int bits = 0;
    for (; from != end && *from != '='; ++from) {
        const std::int32_t value = base64_value(*from);
        if (value < 0) {
            continue;
        }
        held = held << 6 | static_cast<std::uint32_t>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            *to++ = static_cast<unsigned char>(held >> bits);
        }
    }
    return to;
}

} // namespace

const char* after_scheme(const char* uri)
{
    constexpr char kMark[] = "://";
    const char* mark = tovik::_strstr(uri, kMark);
    return mark == nullptr ? nullptr : mark + sizeof kMark - 1;
}

char* get_uri_action(const char* uri)
{
    const char* name = after_scheme(uri);
    if (name == nullptr) {
        return nullptr;
    }
    const std::size_t length = length_before(name, '?');
    return length == 0 ? nullptr : tovik::_strnew(name, length);
}

char* get_uri_argument(const char* uri, const char* name)
{
    const std::size_t nameLength = tovik::_strlen(name);
    if (uri == nullptr || nameLength == 0) {
        return nullptr;
    }
    const char* mark = tovik::_strchr(uri, '?');
    const char* item = mark == nullptr ? uri : mark + 1;
    while (tovik::_strncmp(item, name, nameLength) != 0 || item[nameLength] != '=') {
        const char* separator = tovik::_strchr(item, '&');
        if (separator == nullptr) {
            return nullptr;
        }
        item = separator + 1;
    }
    const char* value = item + nameLength + 1;
    OwnedText copy(tovik::_strnew(value, length_before(value, '&')));
    url_decode(copy.get());
    return copy.release();
}

void url_decode(char* text)
{
    char* to = text;
    for (const char* from = text; *from != 0; ++to) {
        if (*from == '%') {
            const int high = hex_value(from[1]);
            const int low = high < 0 ? -1 : hex_value(from[2]);
            if (low >= 0) {
                *to = static_cast<char>(high * 16 + low);
                if (*to == 0) {
                    return;
                }
                from += 3;
                continue;
            }
        }
        *to = *from == '+' ? ' ' : *from;
        ++from;
    }
    *to = 0;
}

unsigned long base64_decode(unsigned char* data, unsigned long length)
{
    if (length == 0) {
        return 0;
    }
    const unsigned long plain = decode_groups(data, length);
    unsigned char* end = decode_characters(data + plain, data + length, data + plain / 4 * 3);
    *end = 0;
    return static_cast<unsigned long>(end - data);
}

bool number2string(long value, char* buffer, unsigned long capacity)
{
    if (capacity == 0) {
        return false;
    }
    const auto bits = static_cast<unsigned long>(value);
    unsigned long magnitude = value < 0 ? 0 - bits : bits;
    char digits[20];
    unsigned long count = 0;
    do {
        digits[count++] = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (value < 0 && count + 2 >= capacity) {
        buffer[0] = 0;
        return false;
    }
    char* to = buffer;
    if (value < 0) {
        *to++ = '-';
    }
    for (unsigned long i = count < capacity ? count : capacity - 1; i > 0; --i) {
        *to++ = digits[i - 1];
    }
    *to = 0;
    return to != buffer;
}

bool replace_text(char* text, unsigned long capacity, const char* find, const char* replacement)
{
    char* found = tovik::_strstr(text, find);
    if (found == nullptr) {
        return false;
    }
    const std::size_t findLength = tovik::_strlen(find);
    const std::size_t replacementLength = tovik::_strlen(replacement);
    // The text contains what was found, so the difference is not below zero.
    if (tovik::_strlen(text) - findLength + replacementLength >= capacity) {
        return false;
    }
    char* rest = found + findLength;
    tovik::_memmove(found + replacementLength, rest, tovik::_strlen(rest) + 1);
    tovik::_memcpy(found, replacement, replacementLength);
    return true;
}

unsigned long get_string_part(
    const char* text, char separator, unsigned long index, char* part, unsigned long capacity)
{
    if (capacity == 0) {
        return 0;
    }
    unsigned long length = 0;
    if (text != nullptr) {
        for (; index > 0 && *text != 0; ++text) {
            if (*text == separator) {
                --index;
            }
        }
        for (; length + 1 < capacity && text[length] != 0 && text[length] != separator; ++length) {
            part[length] = text[length];
        }
    }
    part[length] = 0;
    return length;
}
