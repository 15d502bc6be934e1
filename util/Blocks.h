// Blocks.h: sixteen bytes at a time, for the primitives and for the texts that pages hand over.
// The blocks are GCC vector types, which work on every target. Two operations use SSE2 intrinsics
// where the target has them, and a loop elsewhere.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace tovik {

/// Sixteen bytes at any address, whatever the type of the object there.
typedef char Block __attribute__((vector_size(16), aligned(1), may_alias));

/// Bytes of a block.
constexpr std::size_t kBlockSize = sizeof(Block);

/// Reads the sixteen bytes at `from`.
inline Block load_block(const void* from)
{
    return *static_cast<const Block*>(from);
}

/// Writes the sixteen bytes at `to`.
inline void store_block(void* to, Block bytes)
{
    *static_cast<Block*>(to) = bytes;
}

/// A set of bytes of a block: bit 0 stands for the first byte.
using ByteMask = unsigned int;

/// The bytes for which a comparison of two blocks, or of sixteen bytes in wider units, holds.
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

/// The blocks of a text in order. They begin at multiples of their size. A block may hold bytes
/// before and after the text, but none from a page of memory in which the text has no byte.
class TextBlocks {
public:
    /// Starts at the block that holds the first byte of `text`.
    explicit TextBlocks(const char* text)
        : m_start(start_of(text))
        , m_bytes(load_around(m_start))
        , m_inside(~0U << (text - m_start))
    {
    }

    /// Goes on to the next block.
    void advance()
    {
        m_start += kBlockSize;
        m_bytes = load_around(m_start);
        m_inside = ~0U;
    }

    /// The bytes of the text in this block that equal `c`.
    ByteMask find(char c) const { return byte_mask(m_bytes == c) & m_inside; }

    /// The bytes that equal `c` or the terminator.
    ByteMask find_or_end(char c) const
    {
        return byte_mask((m_bytes == c) | (m_bytes == 0)) & m_inside;
    }

    /// The bytes that equal `c` and are followed by `next`. The block must not hold the terminator,
    /// since the byte after the block is read too.
    ByteMask find_pair(char c, char next) const
    {
        return byte_mask((m_bytes == c) & (load_around(m_start + 1) == next)) & m_inside;
    }

    /// Address of the first byte of a mask, which is not empty.
    const char* first(ByteMask mask) const { return m_start + std::countr_zero(mask); }

    /// Address of the last byte of a mask, which is not empty.
    const char* last(ByteMask mask) const { return m_start + std::bit_width(mask) - 1; }

private:
    /// Start of the block that holds the first byte of the text. The empty asm hides from the
    /// compiler which object the text is: a compiler that knows its bounds may treat the reads
    /// around it as impossible.
    static const char* start_of(const char* text)
    {
        asm volatile("" : "+r"(text) : : "memory");
        return text - reinterpret_cast<std::uintptr_t>(text) % kBlockSize;
    }

    /// load_block() without the checks of AddressSanitizer, which report bytes around the text.
    __attribute__((no_sanitize_address)) static Block load_around(const char* from)
    {
        return *reinterpret_cast<const Block*>(from);
    }

    const char* m_start;
    Block m_bytes;
    ByteMask m_inside;
};

} // namespace tovik
