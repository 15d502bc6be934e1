#include "util/MemoryUtil.h"

#include <gtest/gtest.h>
#include <numeric>
#include <vector>

using namespace tovik;

TEST(Memory, NullOperandsAreAnswered)
{
    char byte = 'a';
    EXPECT_EQ(_memcpy(nullptr, &byte, 1), nullptr);
    EXPECT_EQ(_memcpy(&byte, nullptr, 1), &byte);
    _memset(nullptr, 0, 1);
    _memmove(nullptr, &byte, 1);
    _memmove(&byte, nullptr, 1);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(_memcmp(nullptr, &byte, 1), 0);
    EXPECT_EQ(_memcmp(&byte, nullptr, 1), 0);
}

TEST(Memory, ComparesUnsigned)
{
    EXPECT_EQ(_memcmp("\xe9", "a", 1), 1);
    EXPECT_EQ(_memcmp("a", "\xe9", 1), -1);
    EXPECT_EQ(_memcmp("ab", "ac", 1), 0);
    EXPECT_EQ(_memcmp("a", "b", 0), 0);
}

TEST(Memory, FindsEmptyNeedlesAtTheStart)
{
    char hay[] = "abab";
    EXPECT_EQ(_memfind(hay, 4, "ba", 2), hay + 1);
    EXPECT_EQ(_memfind(hay, 4, "b\0", 2), nullptr);
    EXPECT_EQ(_memfind(hay, 5, "b\0", 2), hay + 3);
    EXPECT_EQ(_memfind(hay, 4, "x", 0), hay);
    EXPECT_EQ(_memfind(hay, 4, nullptr, 4), hay);
    EXPECT_EQ(_memfind(hay, 4, nullptr, 5), nullptr);
    EXPECT_EQ(_memfind(hay, 2, "aba", 3), nullptr);
    EXPECT_EQ(_memfind(nullptr, 4, "a", 1), nullptr);
}

TEST(Memory, OverlappingCopiesFollowTheByteOrder)
{
    for (int distance = -40; distance <= 40; ++distance) {
        for (std::size_t n = 0; n <= 80; ++n) {
            std::vector<unsigned char> copied(200);
            std::iota(copied.begin(), copied.end(), static_cast<unsigned char>(0));
            std::vector<unsigned char> moved = copied;
            std::vector<unsigned char> ascending = copied;
            const std::vector<unsigned char> before = copied;
            _memcpy(copied.data() + 60 + distance, copied.data() + 60, n);
            _memmove(moved.data() + 60 + distance, moved.data() + 60, n);
            for (std::size_t i = 0; i < n; ++i) {
                ascending[60 + distance + i] = ascending[60 + i];
                ASSERT_EQ(moved[60 + distance + i], before[60 + i]) << distance << " " << n;
            }
            ASSERT_EQ(copied, ascending) << distance << " " << n;
        }
    }
}
