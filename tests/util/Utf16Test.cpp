#include "util/Utf16.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Units = std::basic_string<unsigned short>;

Units units_of(const char16_t* text)
{
    const std::u16string_view view = text;
    return {view.begin(), view.end()};
}

// Neither has a byte of room to spare, so that a sanitizer sees the first one beyond.
std::string to_utf8(const Units& units)
{
    std::vector<char> text(3 * units.size());
    const char* end
        = store_utf8(text.data(), std::vector(units.begin(), units.end()).data(), units.size());
    return end == nullptr ? "none" : std::string(text.data(), end - text.data());
}

Units to_utf16(const std::string& text)
{
    std::vector<unsigned short> units(text.size());
    const std::vector<char> exact(text.c_str(), text.c_str() + text.size() + 1);
    const unsigned short* end = store_utf16(units.data(), exact.data(), text.size());
    return end == nullptr ? Units(1, 0) : Units(units.data(), end - units.data());
}

} // namespace

TEST(Utf16, CharactersOfEveryLengthAreConvertedAtEveryPlaceOfABlock)
{
    const std::pair<const char16_t*, const char*> rows[] = {{u"\x7F", "\x7F"},
        {u"\x80", "\xC2\x80"}, {u"\u07ff", "\xDF\xBF"}, {u"\u0800", "\xE0\xA0\x80"},
        {u"\ud7ff", "\xED\x9F\xBF"}, {u"\ue000", "\xEE\x80\x80"}, {u"\uffff", "\xEF\xBF\xBF"},
        {u"\U00010000", "\xF0\x90\x80\x80"}, {u"\U0010ffff", "\xF4\x8F\xBF\xBF"}};
    for (const auto& [character, bytes] : rows) {
        for (int before = 0; before < 34; ++before) {
            for (int after : {0, 1, 40}) {
                const Units units = Units(before, 'a') + units_of(character) + Units(after, 'b');
                const std::string text = std::string(before, 'a') + bytes + std::string(after, 'b');
                EXPECT_EQ(to_utf8(units), text) << bytes << before;
                EXPECT_EQ(to_utf16(text), units) << bytes << before;
                EXPECT_EQ(is_ascii(text.data(), text.size()), *bytes == '\x7F') << before;
            }
        }
    }
}

TEST(Utf16, WhatHasNoOtherFormIsRefusedAtEveryPlaceOfABlock)
{
    const Units alone[]
        = {{0xD800}, {0xDC00}, {0xD800, 'a'}, {0xDC00, 0xD800}, {0xD800, 0xD800, 0xDC00}};
    const char* bytes[] = {"\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x9F\xBF", "\xED\xA0\x80",
        "\xE2\x82", "\xE2(\xA1", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
        "\xF0\x9F\x98", "\xFF"};
    for (int before = 0; before < 34; ++before) {
        for (const Units& units : alone) {
            EXPECT_EQ(to_utf8(Units(before, 'a') + units), "none") << before;
        }
        for (const char* text : bytes) {
            EXPECT_EQ(to_utf16(std::string(before, 'a') + text), Units(1, 0)) << before << text;
        }
    }
}
