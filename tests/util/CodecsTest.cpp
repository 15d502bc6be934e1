#include "util/Codecs.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

// What action URLs, URL decoding and base64 give is compared with models in tests/fuzz.

TEST(ActionUrl, HasNothingWhenItIsNull)
{
    EXPECT_EQ(get_uri_action(nullptr), nullptr);
    EXPECT_EQ(get_uri_argument(nullptr, "status"), nullptr);
    EXPECT_EQ(get_uri_argument("tvk://x?a=1", nullptr), nullptr);
}

TEST(NumberToString, FollowsTheCapacity)
{
    const std::string lowest = std::to_string(LONG_MIN), highest = std::to_string(LONG_MAX);
    const std::tuple<long, unsigned long, std::string, bool> rows[] = {{1, 0, "unset", false},
        {123, 4, "123", true}, {1234, 4, "234", true}, {-5, 4, "-5", true}, {-5, 3, "", false},
        {0, 2, "0", true}, {7, 1, "", false}, {LONG_MIN, lowest.size() + 2, lowest, true},
        {LONG_MAX, highest.size() + 1, highest, true}};
    for (const auto& [value, capacity, text, result] : rows) {
        char buffer[32] = "unset";
        EXPECT_EQ(number2string(value, buffer, capacity), result) << value;
        EXPECT_EQ(buffer, text) << value << " in " << capacity;
    }
}

TEST(TextEditors, StayWithinTheCapacity)
{
    const std::tuple<unsigned long, const char*, const char*, const char*> rows[] = {
        {32, "NAME", "Bob", "Hello Bob!"}, {10, "NAME", "Bob", "Hello NAME!"},
        {32, "NAME", "my dear friend", "Hello my dear friend!"}, {32, "NAME", nullptr, "Hello !"},
        {0, "Hello NAME!", "", "Hello NAME!"}, {32, "", "x", "Hello NAME!"},
        {ULONG_MAX, "NAME", "Bob", "Hello Bob!"}, {ULONG_MAX, "none", "Bob", "Hello NAME!"}};
    for (const auto& [capacity, find, replacement, result] : rows) {
        char text[64] = "Hello NAME!";
        EXPECT_EQ(
            replace_text(text, capacity, find, replacement), std::string(result) != "Hello NAME!");
        EXPECT_STREQ(text, result);
    }
    const std::tuple<const char*, unsigned long, unsigned long, const char*> parts[]
        = {{"a,b,,c", 0, 8, "a"}, {"a,b,,c", 2, 8, ""}, {"a,b,,c", 3, 8, "c"}, {"a,b,,c", 4, 8, ""},
            {"abcdef", 0, 4, "abc"}, {"abc", 0, 1, ""}, {nullptr, 0, 8, ""}, {"a", 0, 0, "unset"}};
    for (const auto& [text, index, capacity, expected] : parts) {
        char part[8] = "unset";
        const unsigned long length = get_string_part(text, ',', index, part, capacity);
        EXPECT_STREQ(part, expected) << text << index;
        EXPECT_EQ(length, capacity == 0 ? 0 : std::string(expected).size());
    }
}
