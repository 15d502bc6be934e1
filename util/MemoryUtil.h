// MemoryUtil.h: raw memory primitives that take a null pointer as an ordinary value.
#pragma once

#include <cstddef>

namespace tovik {

/// Copies `n` bytes in ascending address order and returns `dst`. Copies nothing when either
/// operand is null, when both are the same, or when `n` is 0. Where the operands overlap, the
/// result is that of the ascending byte copy; see _memmove() for a copy that is safe there.
void* _memcpy(void* dst, const void* src, std::size_t n);

/// Fills `n` bytes with `value`; does nothing for a null `dst`.
void _memset(void* dst, unsigned char value, std::size_t n);

/// Copies `n` bytes between operands that may overlap; does nothing when either is null.
void _memmove(void* dst, void* src, std::size_t n);

/// Compares `n` bytes as unsigned values: exactly -1, 0 or 1; 0 when either operand is null.
int _memcmp(const void* a, const void* b, std::size_t n);

/// First place in `haystack` that holds the `needleSize` bytes of `needle`; null when there is
/// none or the haystack is null. A null or empty needle that is not larger than the haystack is
/// found at its start.
void* _memfind(
    void* haystack, std::size_t haystackSize, const void* needle, std::size_t needleSize);

} // namespace tovik
