// Blocks.h: sixteen bytes at a time, for the primitives and for the text that a page hands over.
// The compiler's own vectors do most of the work on every processor. What has an instruction on
// one of them that the compiler does not find is written out there, and a loop elsewhere.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tovik {

/// Sixteen bytes at any address and of any object.
typedef char Block __attribute__((vector_size(16), aligned(1), may_alias));

constexpr std::size_t kBlockSize = sizeof(Block);

inline Block load_block(const void* from)
{
    return *static_cast<const Block*>(from);
}

inline void store_block(void* to, Block bytes)
{
    *static_cast<Block*>(to) = bytes;
}

/// Some of a block's bytes: bit 0 stands for the first one.
using ByteMask = unsigned int;

/// Where a comparison of two blocks, or of as many bytes in wider units, holds.
template <typename Comparison> ByteMask byte_mask(Comparison holds)
{
#ifdef __SSE2__
    return static_cast<ByteMask>(_mm_movemask_epi8(reinterpret_cast<__m128i>(holds)));
#else
    const Block bytes = reinterpret_cast<Block>(holds);
    ByteMask mask = 0;
    for (unsigned int i = 0; i < kBlockSize; ++i) {
        mask |= bytes[i] == 0 ? 0U : 1U << i;
    }
    return mask;
#endif
}

/// Stores sixteen UTF-16 units as bytes; false, with nothing stored, when one is above 0x7F.
inline bool store_ascii(char* to, const unsigned short* units)
{
    typedef unsigned short Half __attribute__((vector_size(16), aligned(2), may_alias));
    const Half low = *reinterpret_cast<const Half*>(units);
    const Half high = *reinterpret_cast<const Half*>(units + kBlockSize / 2);
    if (byte_mask((low | high) > 0x7F) != 0) {
        return false;
    }
#ifdef __SSE2__
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to),
        _mm_packus_epi16(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high)));
#else
    for (unsigned int i = 0; i < kBlockSize; ++i) {
        to[i] = static_cast<char>(units[i]);
    }
#endif
    return true;
}

/// The blocks of a text in order. They begin at multiples of their size, so none reaches into a
/// page of memory that the text does not, although bytes around the text are read.
class TextBlocks {
public:
    explicit TextBlocks(const char* text)
        : m_start(start_of(text))
        , m_bytes(load_around(m_start))
        , m_inside(~0U << (text - m_start))
    {
    }

    void advance()
    {
        m_start += kBlockSize;
        m_bytes = load_around(m_start);
        m_inside = ~0U;
    }

    /// Where the block holds `c`, from the start of the text on.
    ByteMask find(char c) const { return byte_mask(m_bytes == c) & m_inside; }

    /// Where it holds `c` or the terminator.
    ByteMask find_or_end(char c) const
    {
        return byte_mask((m_bytes == c) | (m_bytes == 0)) & m_inside;
    }

    /// Where it holds `c` with `next` behind it; for a block without the terminator.
    ByteMask find_pair(char c, char next) const
    {
        return byte_mask((m_bytes == c) & (load_around(m_start + 1) == next)) & m_inside;
    }

    const char* first(ByteMask mask) const { return m_start + std::countr_zero(mask); }
    const char* last(ByteMask mask) const { return m_start + std::bit_width(mask) - 1; }

private:
    /// Start of the block that holds the text's start. The compiler has to forget which object the
    /// text is: where it sees one whole, it may take the reads around it for impossible.
    static const char* start_of(const char* text)
    {
        asm volatile("" : "+r"(text) : : "memory");
        return text - reinterpret_cast<std::uintptr_t>(text) % kBlockSize;
    }

    /// As load_block(), for bytes that AddressSanitizer may know to be outside the text.
    __attribute__((no_sanitize_address)) static Block load_around(const char* from)
    {
        return *reinterpret_cast<const Block*>(from);
    }

    const char* m_start;
    Block m_bytes;
    ByteMask m_inside;
};

} // namespace tovik
