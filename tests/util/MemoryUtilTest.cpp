#include "util/MemoryUtil.h"

#include <gtest/gtest.h>

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

TEST(Memory, FindsEmptyNeedlesAtTheStart)
{
    char hay[] = "abab";
    EXPECT_EQ(_memfind(hay, 4, "b\0", 2), nullptr);
    EXPECT_EQ(_memfind(hay, 5, "b\0", 2), hay + 3);
    EXPECT_EQ(_memfind(hay, 4, "x", 0), hay);
    EXPECT_EQ(_memfind(hay, 4, nullptr, 4), hay);
    EXPECT_EQ(_memfind(hay, 4, nullptr, 5), nullptr);
    EXPECT_EQ(_memfind(nullptr, 4, "a", 1), nullptr);
}
