#include "util/Utf16.h"

#include "util/Blocks.h"

namespace {

using Unit = unsigned short;

char to_byte(unsigned int bits)
{
    return static_cast<char>(bits);
}

/// The six bits at `shift` as a byte that continues a character.
char continuation(unsigned int code, unsigned int shift)
{
    return to_byte(0x80 | (code >> shift & 0x3F));
}

/// Whether the sixteen bytes at `from` are ASCII. Plain char has no sign on some targets.
bool is_ascii_block(const void* from)
{
    typedef signed char Signed __attribute__((vector_size(16)));
    return tovik::byte_mask(reinterpret_cast<Signed>(tovik::load_block(from)) < 0) == 0;
}

/// Writes one character; advances `units` past it and returns the end, or null for a surrogate
/// without its partner.
char* store_character(char* text, const Unit*& units, const Unit* end)
{
    const unsigned int unit = *units++;
    if (unit < 0x80) {
        *text++ = to_byte(unit);
    } else if (unit < 0x800) {
        *text++ = to_byte(0xC0 | unit >> 6);
        *text++ = continuation(unit, 0);
    } else if (unit < 0xD800 || unit > 0xDFFF) {
        *text++ = to_byte(0xE0 | unit >> 12);
        *text++ = continuation(unit, 6);
        *text++ = continuation(unit, 0);
    } else if (unit < 0xDC00 && units != end && (*units & 0xFC00) == 0xDC00) {
        const unsigned int code = 0x10000 + ((unit & 0x3FF) << 10 | (*units++ & 0x3FF));
        *text++ = to_byte(0xF0 | code >> 18);
        *text++ = continuation(code, 12);
        *text++ = continuation(code, 6);
        *text++ = continuation(code, 0);
    } else {
        return nullptr;
    }
    return text;
}

/// Writes one character of more than a byte; advances `text` past it and returns the end, or null
/// when it is none. The terminator continues no character.
Unit* store_units(Unit* units, const unsigned char*& text)
{
    constexpr unsigned int kLeast[] = {0x80, 0x800, 0x10000};
    unsigned int code = *text++;
    if (code < 0xC2 || code > 0xF4) {
        return nullptr;
    }
    const unsigned int more = code < 0xE0 ? 1 : code < 0xF0 ? 2 : 3;
    code &= 0x3FU >> more;
    for (unsigned int i = 0; i < more; ++i) {
        if ((*text & 0xC0) != 0x80) {
            return nullptr;
        }
        code = code << 6 | (*text++ & 0x3F);
    }
    if (code < kLeast[more - 1] || code > 0x10FFFF || (code & ~0x7FFU) == 0xD800) {
        return nullptr;
    }
    if (more == 3) {
        *units++ = static_cast<Unit>(0xD7C0 + (code >> 10));
        code = 0xDC00 | (code & 0x3FF);
    }
    *units++ = static_cast<Unit>(code);
    return units;
}

/// Stores a block of bytes as units; false, with nothing stored, when one is not ASCII.
bool widen_ascii(Unit* units, const unsigned char* text)
{
    if (!is_ascii_block(text)) {
        return false;
    }
    for (std::size_t i = 0; i < tovik::kBlockSize; ++i) {
        units[i] = text[i];
    }
    return true;
}

} // namespace

bool is_ascii(const char* text, std::size_t length)
{
    const char* const end = text + length;
    while (static_cast<std::size_t>(end - text) >= tovik::kBlockSize) {
        if (!is_ascii_block(text)) {
            return false;
        }
        text += tovik::kBlockSize;
    }
    while (text != end) {
        if ((*text++ & 0x80) != 0) {
            return false;
        }
    }
    return true;
}

char* store_utf8(char* text, const unsigned short* units, std::size_t length)
{
    const Unit* const end = units + length;
    while (units != end) {
        const auto left = static_cast<std::size_t>(end - units);
        if (left >= tovik::kBlockSize && tovik::store_ascii(text, units)) {
            text += tovik::kBlockSize;
            units += tovik::kBlockSize;
            continue;
        }
        // Looking for ASCII again after each character would cost more than it saves.
        const Unit* const blockEnd = left > tovik::kBlockSize ? units + tovik::kBlockSize : end;
        while (units < blockEnd) {
            text = store_character(text, units, end);
            if (text == nullptr) {
                return nullptr;
            }
        }
    }
    return text;
}

unsigned short* store_utf16(unsigned short* units, const char* text, std::size_t length)
{
    const auto* next = reinterpret_cast<const unsigned char*>(text);
    const unsigned char* const end = next + length;
    while (next < end) {
        const auto left = static_cast<std::size_t>(end - next);
        if (left >= tovik::kBlockSize && widen_ascii(units, next)) {
            units += tovik::kBlockSize;
            next += tovik::kBlockSize;
            continue;
        }
        const unsigned char* const blockEnd
            = left > tovik::kBlockSize ? next + tovik::kBlockSize : end;
        while (next < blockEnd) {
            if (*next < 0x80) {
                *units++ = *next++;
                continue;
            }
            units = store_units(units, next);
            if (units == nullptr) {
                return nullptr;
            }
        }
    }
    return units;
}
