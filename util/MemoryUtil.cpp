#include "util/MemoryUtil.h"

#include <cstring>

namespace tovik {

void* _memcpy(void* dst, const void* src, std::size_t n)
{
    if (dst == nullptr || src == nullptr || dst == src) {
        return dst;
    }
    auto* to = static_cast<unsigned char*>(dst);
    const auto* from = static_cast<const unsigned char*>(src);
    for (std::size_t i = 0; i < n; ++i) {
        to[i] = from[i];
    }
    return dst;
}

void _memset(void* dst, unsigned char value, std::size_t n)
{
    if (dst != nullptr) {
        std::memset(dst, value, n);
    }
}

void _memmove(void* dst, void* src, std::size_t n)
{
    if (dst < src) {
        _memcpy(dst, src, n);
        return;
    }
    if (src == nullptr || dst == src) {
        return;
    }
    auto* to = static_cast<unsigned char*>(dst);
    const auto* from = static_cast<const unsigned char*>(src);
    for (std::size_t i = n; i > 0; --i) {
        to[i - 1] = from[i - 1];
    }
}

int _memcmp(const void* a, const void* b, std::size_t n)
{
    if (a == nullptr || b == nullptr) {
        return 0;
    }
    const auto* left = static_cast<const unsigned char*>(a);
    const auto* right = static_cast<const unsigned char*>(b);
    for (std::size_t i = 0; i < n; ++i) {
        if (left[i] != right[i]) {
            return left[i] < right[i] ? -1 : 1;
        }
    }
    return 0;
}

void* _memfind(void* haystack, std::size_t haystackSize, const void* needle, std::size_t needleSize)
{
    if (haystack == nullptr || needleSize > haystackSize) {
        return nullptr;
    }
    auto* bytes = static_cast<unsigned char*>(haystack);
    for (std::size_t i = 0; i <= haystackSize - needleSize; ++i) {
        if (_memcmp(bytes + i, needle, needleSize) == 0) {
            return bytes + i;
        }
    }
    return nullptr;
}

} // namespace tovik
