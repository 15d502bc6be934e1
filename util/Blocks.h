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

} // namespace tovik
