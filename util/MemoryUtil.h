// MemoryUtil.h: memory primitives that accept a null pointer as an ordinary value.
#pragma once

#include <cstddef>

namespace tovik {

/// Copies `n` bytes and returns `dst`. Copies nothing when either operand is null or both are the
/// same. Overlapping operands give the result of a byte copy in ascending order; see _memmove().
void* _memcpy(void* dst, const void* src, std::size_t n);

/// Fills `n` bytes with `value`; does nothing for a null `dst`.
void _memset(void* dst, unsigned char value, std::size_t n);

/// Copies `n` bytes between operands that may overlap; does nothing when either is null.
void _memmove(void* dst, void* src, std::size_t n);

/// Compares `n` bytes as unsigned values. Returns exactly -1, 0 or 1; 0 when an operand is null.
int _memcmp(const void* a, const void* b, std::size_t n);

/// First occurrence of the `needleSize` bytes of `needle` in `haystack`; null when it is not found
/// or the haystack is null. A null or empty needle that is no larger than the haystack is found at
/// the start.
void* _memfind(
    void* haystack, std::size_t haystackSize, const void* needle, std::size_t needleSize);

} // namespace tovik
