// TextBlocks.h: reading a text whose end is not known, several bytes at a time. The primitives that
// measure, compare and search are built of the reader, the comparison and the letter cases here.
//
// A processor with SSE2 reads sixteen bytes at once. They may lie around the text, but never in a
// page of memory in which the text has no byte. Other processors, and builds with TOVIK_NARROW,
// read one byte at once, so that sanitizers and valgrind judge each of them.
#pragma once

#include "util/Blocks.h"

#include <algorithm>

namespace tovik {

#if defined(__SSE2__) && !defined(TOVIK_NARROW)
/// Bytes that are read at once.
constexpr std::size_t kReadSize = kBlockSize;
/// Bytes of the reads that are tested at once.
constexpr std::size_t kGroupSize = 4 * kReadSize;
#else
constexpr std::size_t kReadSize = 1;
constexpr std::size_t kGroupSize = 1;
#endif

/// The bytes of one read, at any address.
typedef unsigned char TextBlock __attribute__((vector_size(kReadSize), aligned(1), may_alias));

/// Memory is protected in units of this size or of a multiple.
constexpr std::size_t kPageSize = 4096;

/// Reads kReadSize bytes.
inline TextBlock read_text(const char* from)
{
    return *reinterpret_cast<const TextBlock*>(from);
}

/// A read of the same character at each place.
inline TextBlock everywhere(char c)
{
    return TextBlock {} + static_cast<unsigned char>(c);
}

/// The zero bytes of a read.
inline ByteMask zeros(TextBlock bytes)
{
    if constexpr (kReadSize == kBlockSize) {
        return byte_mask(bytes == 0);
    } else {
        return bytes[0] == 0 ? 1 : 0;
    }
}

/// The smaller one of each two bytes, which is zero where either is.
inline TextBlock least(TextBlock a, TextBlock b)
{
    return a < b ? a : b;
}

/// Address of a byte as a number.
inline std::uintptr_t address_of(const char* byte)
{
    return reinterpret_cast<std::uintptr_t>(byte);
}

/// The same text, whose object and bounds the compiler no longer knows. With them, it may treat
/// the reads around the text as impossible.
inline const char* unbounded(const char* text)
{
    asm volatile("" : "+r"(text) : : "memory");
    return text;
}

/// Letters as they are.
struct ExactCase {
    /// The same bytes.
    static TextBlock folded(TextBlock bytes) { return bytes; }

    /// The same character.
    static char folded(char c) { return c; }
};

/// ASCII letters folded to lower case.
struct AnyCase {
    /// The bytes with small letters for capitals.
    static TextBlock folded(TextBlock bytes)
    {
        // 'A' becomes the lowest signed value, so that one comparison tells the capitals.
        typedef signed char Signed __attribute__((vector_size(kReadSize)));
        const auto capital = reinterpret_cast<Signed>(bytes + (0x80 - 'A')) < -0x80 + 26;
        return bytes + reinterpret_cast<TextBlock>(capital & ('a' - 'A'));
    }

    /// The small letter of a capital, or the same character.
    static char folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
};

/// The stops at which a reader halts, as TextBlocks asks for them: a character and the terminator.
struct CharacterOrEnd {
    /// Zero where the character or the terminator is.
    TextBlock at(const char* start) const
    {
        const TextBlock bytes = read_text(start);
        return least(bytes, bytes ^ everywhere(c));
    }

    /// The stops of the first read, which need nothing from the one before.
    ByteMask first(const char* start, const char*) const { return zeros(at(start)); }

    /// The terminator alone ends the text.
    bool is_over(const char*) const { return false; }

    /// The character; with 0, the terminator alone is a stop.
    char c;
};

/// The reads of a text that hold a stop, in order. They begin at multiples of kReadSize. `Stops`
/// has these functions:
///   at(start)           gives bytes that are zero at the stops of the read at `start`
///   first(start, text)  gives the stops of the read in which the text starts, and anything for
///                       the bytes before the text
///   is_over(byte)       says whether the text has ended before this byte
template <typename Stops> class TextBlocks {
public:
    /// Reads from `text`, of which one byte at least can be read, to the first read with a stop, or
    /// to the first one after the text.
    TextBlocks(const char* text, const Stops& stops)
        : m_stops(stops)
    {
        text = unbounded(text);
        m_start = text - address_of(text) % kReadSize;
        m_inside = ~0U << (text - m_start);
        m_mask = stops.first(m_start, text) & m_inside;
        if (m_mask == 0) {
            advance();
        }
    }

    /// Goes on to the next read with a stop, or to the first one after the text.
    void advance()
    {
        m_inside = ~0U;
        do {
            m_start += kReadSize;
            if (address_of(m_start) % kGroupSize == 0) {
                skip_groups();
            }
            if (m_stops.is_over(m_start)) {
                return;
            }
            m_mask = zeros(m_stops.at(m_start));
        } while (m_mask == 0);
    }

    /// The first stop of this read; an address after the text when there was none before.
    const char* stop() const { return m_start + std::countr_zero(m_mask); }

    /// The bytes of the text in this read that equal `c`.
    ByteMask find(char c) const { return zeros(read_text(m_start) ^ everywhere(c)) & m_inside; }

    /// Address of the last byte of a mask, which is not empty.
    const char* last(ByteMask mask) const { return m_start + std::bit_width(mask) - 1; }

private:
    /// A group begins at a multiple of its size, so it ends in the page in which it begins.
    void skip_groups()
    {
        while (!m_stops.is_over(m_start) && zeros(group()) == 0) {
            m_start += kGroupSize;
        }
    }

    TextBlock group() const
    {
        TextBlock stops = m_stops.at(m_start);
        for (std::size_t i = kReadSize; i < kGroupSize; i += kReadSize) {
            stops = least(stops, m_stops.at(m_start + i));
        }
        return stops;
    }

    Stops m_stops;
    const char* m_start;
    ByteMask m_inside;
    ByteMask m_mask;
};

/// Units of `s`, which is not null, before the terminator.
inline std::size_t text_length(const char* s)
{
    return static_cast<std::size_t>(TextBlocks(s, CharacterOrEnd {0}).stop() - s);
}

/// Bytes that are zero where two reads differ or, of terminated texts, where the first one ends.
template <typename Case, bool kTerminated> TextBlock common_bytes(const char* a, const char* b)
{
    const TextBlock left = Case::folded(read_text(a));
    const auto same = reinterpret_cast<TextBlock>(left == Case::folded(read_text(b)));
    return kTerminated ? same & left : same;
}

/// Moves `i` past equal reads of two texts and, if there is a stop of common_bytes() in a read that
/// begins before `end`, to the first one. Returns whether there is. As a call of its own, it would
/// cost short texts a third of their time.
template <typename Case, bool kTerminated>
[[gnu::always_inline]] inline bool reach_stop(
    const char* a, const char* b, std::size_t& i, std::size_t end)
{
    const auto at
        = [=](std::size_t start) { return common_bytes<Case, kTerminated>(a + start, b + start); };
    const auto group = [=](std::size_t start) {
        TextBlock same = at(start);
        for (std::size_t more = kReadSize; more < kGroupSize; more += kReadSize) {
            same = least(same, at(start + more));
        }
        return same;
    };
    const auto reach = [&](std::size_t limit) {
        for (; i < limit; i += kReadSize) {
            const ByteMask stops = zeros(at(i));
            if (stops != 0) {
                i += static_cast<std::size_t>(std::countr_zero(stops));
                return true;
            }
        }
        return false;
    };
    // Most texts end or differ early, where single reads are faster.
    if (kTerminated && reach(std::min(end, i + kGroupSize))) {
        return true;
    }
    while (i + kGroupSize <= end && zeros(group(i)) == 0) {
        i += kGroupSize;
    }
    return reach(end);
}

/// How many of the first `n` characters of two texts, folded, are equal up to the first difference
/// or, of terminated texts, up to the end of both.
template <typename Case, bool kTerminated>
std::size_t common_length(const char* a, const char* b, std::size_t n)
{
    a = unbounded(a);
    b = unbounded(b);
    std::size_t i = 0;
    while (i < n) {
        const std::size_t room
            = kPageSize - std::max(address_of(a + i) % kPageSize, address_of(b + i) % kPageSize);
        if (room >= kReadSize) {
            const std::size_t end = i + std::min(n - i, room - kReadSize + 1);
            if (reach_stop<Case, kTerminated>(a, b, i, end)) {
                break;
            }
            continue;
        }
        // A read would cross the end of a page.
        if (Case::folded(a[i]) != Case::folded(b[i]) || (kTerminated && a[i] == 0)) {
            break;
        }
        ++i;
    }
    return std::min(i, n);
}

} // namespace tovik
