#include "util/Codecs.h"

#include "util/Owned.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

namespace {

std::string taken(char* text)
{
    const OwnedText owner(text);
    return text == nullptr ? "(null)" : text;
}

} // namespace

TEST(ActionUrl, IsTakenApart)
{
    const char* const actions[][2]
        = {{"tvk://exit?status=CKR_OK", "exit"}, {"tvk://resize", "resize"}, {"tvk://a/b?x", "a/b"},
            {"tvk://%65xit", "%65xit"}, {"a?b://c", "c"}, {"tvk://", "(null)"},
            {"tvk://?status=1", "(null)"}, {"exit", "(null)"}, {nullptr, "(null)"}};
    for (const auto& [uri, action] : actions) {
        EXPECT_EQ(taken(get_uri_action(uri)), action) << uri;
    }
    const char* const arguments[][3] = {
        {"tvk://exit?status=CKR_OK&response=abc", "status", "CKR_OK"},
        {"tvk://exit?status=CKR_OK&response=abc", "response", "abc"},
        {"tvk://exit?status=CKR_OK", "stat", "(null)"},
        {"tvk://exit?status=CKR_OK", "tatus", "(null)"},
        {"tvk://x?status=&response=1", "status", ""},
        {"tvk://x?response=a%20b+c", "response", "a b c"}, {"status=OK", "status", "OK"},
        {"tvk://x?status=1&status=2", "status", "1"}, {"tvk://x?astatus=1&status=2", "status", "2"},
        {"tvk://x?status&status=2", "status", "2"}, {"tvk://x?status=a=b?c#d", "status", "a=b?c#d"},
        {"tvk://x?status=a%00b", "status", "a"}, {"tvk://x?sTatus=1", "status", "(null)"},
        {"tvk://x?", "status", "(null)"}, {"tvk://x?=1", "", "(null)"},
        {"tvk://x?a=1", nullptr, "(null)"}, {nullptr, "status", "(null)"}};
    for (const auto& [uri, name, value] : arguments) {
        EXPECT_EQ(taken(get_uri_argument(uri, name)), value) << uri << " " << name;
    }
    // Without a "?" the whole text is the query, of which the part before "&" is one item.
    EXPECT_EQ(taken(get_uri_argument("tvk://exit&status=OK", "status")), "OK");
}

TEST(UrlDecoding, LeavesMalformedEscapes)
{
    const char* const rows[][2]
        = {{"%41%62", "Ab"}, {"%4a%4A", "JJ"}, {"100%", "100%"}, {"%4G", "%4G"}, {"%G4", "%G4"},
            {"%%41", "%A"}, {"a+b", "a b"}, {"%2B+", "+ "}, {"%2541", "%41"}, {"%+", "% "},
            {"%4", "%4"}, {"a%00b%41", "a"}, {"", ""}, {"%e9%FF", "\xe9\xff"}};
    for (const auto& [encoded, decoded] : rows) {
        std::string text = encoded;
        url_decode(text.data());
        EXPECT_STREQ(text.c_str(), decoded) << encoded;
    }
}

TEST(Base64, DecodesInPlace)
{
    const std::tuple<std::string, std::string> rows[] = {{"TWFu", "Man"}, {"TWE=", "Ma"},
        {"TWE", "Ma"}, {"TQ==", "M"}, {"T", ""}, {"=TWFu", ""}, {"TQ==TWFu", "M"},
        {"PHA+aGk8L3A+", "<p>hi</p>"}, {"TW\nFu TW-_E=", "ManMa"}, {"TW\xc6u", "Man"},
        {"TWE\xbdTWFu", "Ma\x13\x58\x5b"}, {"AP8/", std::string("\0\xff\x3f", 3)}};
    for (const auto& [encoded, decoded] : rows) {
        std::string text = encoded;
        auto* data = reinterpret_cast<unsigned char*>(text.data());
        const unsigned long length = base64_decode(data, text.size());
        ASSERT_EQ(length, decoded.size()) << encoded;
        EXPECT_EQ(text.substr(0, length), decoded) << encoded;
        EXPECT_EQ(text[length], '\0') << encoded;
    }
    unsigned char untouched = 'x';
    EXPECT_EQ(base64_decode(&untouched, 0), 0U);
    EXPECT_EQ(untouched, 'x');
}

TEST(NumberToString, FollowsTheCapacity)
{
    const std::tuple<long, unsigned long, const char*, bool> rows[] = {{123, 4, "123", true},
        {1234, 4, "234", true}, {-5, 4, "-5", true}, {-5, 3, "", false}, {-12, 4, "", false},
        {0, 2, "0", true}, {7, 1, "", false}, {-7, 1, "", false},
        {999999999999999, 16, "999999999999999", true},
        {1999999999999999, 16, "999999999999999", true},
        {-9999999999999, 16, "-9999999999999", true}, {-99999999999999, 16, "", false},
        {LONG_MIN, 22, "-9223372036854775808", true}, {LONG_MAX, 20, "9223372036854775807", true}};
    for (const auto& [value, capacity, text, result] : rows) {
        char buffer[32] = "unset";
        EXPECT_EQ(number2string(value, buffer, capacity), result) << value;
        EXPECT_STREQ(buffer, text) << value << " in " << capacity;
    }
    char buffer = 'x';
    EXPECT_FALSE(number2string(1, &buffer, 0));
    EXPECT_EQ(buffer, 'x');
}

TEST(TextEditors, StayWithinTheCapacity)
{
    const std::tuple<unsigned long, const char*, const char*, const char*> rows[] = {
        {32, "NAME", "Bob", "Hello Bob!"}, {10, "NAME", "Bob", "Hello NAME!"},
        {32, "NAME", "my dear friend", "Hello my dear friend!"}, {32, "NAME", nullptr, "Hello !"},
        {0, "Hello NAME!", "", "Hello NAME!"}, {32, "", "x", "Hello NAME!"}};
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
