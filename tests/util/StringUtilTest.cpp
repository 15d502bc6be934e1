#include "util/StringUtil.h"

#include "util/Owned.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>

using namespace tovik;

namespace {

const char* const kNull = nullptr;
const wchar_t* const kWideNull = nullptr;

std::string taken(char* text)
{
    const OwnedText owner(text);
    return text == nullptr ? "(null)" : text;
}

} // namespace

TEST(Searches, RefuseNullsAndAreWideToo)
{
    EXPECT_EQ(_strlen(kNull) + _strlen(kWideNull), 0U);
    EXPECT_EQ(_strchr(kNull, 'x'), nullptr);
    EXPECT_EQ(_strrchr(kNull, 'x'), nullptr);
    for (const auto& [haystack, needle] : {std::pair(kNull, "a"), std::pair("a", kNull)}) {
        EXPECT_EQ(_strstr(haystack, needle), nullptr);
        EXPECT_EQ(_strrstr(haystack, needle), nullptr);
        EXPECT_EQ(_stristr(haystack, needle), nullptr);
    }
    wchar_t wide[] = L"a/ba/b";
    EXPECT_EQ(_strlen(wide), 6U);
    EXPECT_EQ(_strchr(wide, L'/'), wide + 1);
    EXPECT_EQ(_strrchr(wide, L'/'), wide + 4);
    EXPECT_EQ(_strchr(wide, L'\0'), nullptr);
    EXPECT_EQ(_strstr(wide, L"/ba"), wide + 1);
    EXPECT_EQ(_strstr(wide, L""), nullptr);
}

TEST(Copying, KeepsItsNullContractAndAlwaysTerminates)
{
    char text[8] = "before";
    wchar_t wide[8] = L"before";
    EXPECT_STREQ(_strncpy(text, kNull, 3), "before");
    EXPECT_STREQ(_strcat(text, kNull), "before");
    EXPECT_STREQ(_strncat(text, kNull, 3), "before");
    EXPECT_STREQ(_strcpy(wide, kWideNull), L"before");
    EXPECT_STREQ(_strncpy(text, "hello", 3), "hel");
    EXPECT_EQ(text[4], 'r') << "the rest is not filled";
    EXPECT_STREQ(_strcpy(text, kNull), "");
    EXPECT_STREQ(_strncpy(wide, L"hello", 3), L"hel");
    EXPECT_STREQ(_strcat(wide, L"p"), L"help");
    EXPECT_EQ(_strcpy(static_cast<char*>(nullptr), "x"), nullptr);
    EXPECT_EQ(_strncpy(static_cast<char*>(nullptr), "x", 1), nullptr);
    EXPECT_EQ(_strcat(static_cast<char*>(nullptr), "x"), nullptr);
    EXPECT_EQ(_strcat(static_cast<wchar_t*>(nullptr), L"x"), nullptr);
    EXPECT_EQ(_strncat(nullptr, "x", 1), nullptr);
}

TEST(Comparison, TakesNullsAndFoldsLettersAlone)
{
    const std::tuple<const char*, const char*, std::size_t, int, int, int> rows[] = {
        {nullptr, nullptr, 0, -1, -1, -1}, {nullptr, "", 1, -1, -1, -1},
        {"", nullptr, 1, -1, -1, -1}, {"Hello", "hELLO", 9, -1, -1, 0},
        {"\xc9", "\xe9", 9, -1, -1, -32}, {"@", "`", 9, -1, -1, -32}, {"[", "{", 9, -1, -1, -32}};
    for (const auto& [a, b, n, whole, bounded, folded] : rows) {
        EXPECT_EQ(_strcmp(a, b), whole) << a << " " << b;
        EXPECT_EQ(_strncmp(a, b, n), bounded) << a << " " << b;
        EXPECT_EQ(_strncasecmp(a, b, n), folded) << a << " " << b;
    }
    // By their bits, as wchar_t is unsigned on some processors.
    const wchar_t lowest[] = {static_cast<wchar_t>(INT_MIN), 0}, highest[] = {INT_MAX, 0};
    EXPECT_EQ(_strcmp(lowest, L"a"), -1);
    EXPECT_EQ(_strncmp(L"abc", L"abd", 2), 0);
    EXPECT_EQ(_strncmp(kWideNull, L"", 0), -1);
    EXPECT_EQ(_strncasecmp(highest, lowest, 1), INT_MAX);
    EXPECT_EQ(_strncasecmp(lowest, highest, 1), INT_MIN);
    EXPECT_EQ(_strncasecmp(L"ABC", L"abd", 2), 0);
}

TEST(NewStrings, HoldTheRequestedTexts)
{
    const char* const spans[][4] = {{"x(a(b)c)y", "(", ")", "(a(b)c)"},
        {"x(a(b", "(", ")", "(null)"}, {"a'b'c", "'", "'", "'b'"}, {"a'b", "'", "'", "(null)"},
        {"'''", "''", "''", "(null)"}, {"((a)", "((", ")", "((a)"},
        {"(((a)))", "((", "))", "(((a)))"}, // overlapping markers count each
        {"<<>x>>", "<<", ">", "<<>"}, {"(a)", "(", "", "(null)"}, {"(a)", "(", nullptr, "(null)"},
        {"(a)", "", ")", "(null)"}, {nullptr, "(", ")", "(null)"}};
    for (const auto& [text, open, close, expected] : spans) {
        EXPECT_EQ(taken(_strnew(text, open, close)), expected) << text << open << close;
    }
    EXPECT_EQ(taken(_strnew("a", 5)), "a");
    EXPECT_EQ(_strnew(kNull, 5), nullptr);
    EXPECT_DEATH([]() noexcept { _strnew("a", SIZE_MAX); }(), "") << "no array is so large";
    EXPECT_DEATH([]() noexcept { _strnew(L"a", SIZE_MAX); }(), "");
    EXPECT_EQ(_strnew(kNull), nullptr);
    const std::unique_ptr<wchar_t[]> wide(_strnew(L"abc", 2));
    EXPECT_STREQ(wide.get(), L"ab");
    EXPECT_EQ(_strnew(kWideNull), nullptr);
    EXPECT_EQ(taken(_strconcat("a", nullptr, "b")), "ab");
    EXPECT_EQ(taken(_strconcat("a", "b", "c", "", "e")), "abce");
    EXPECT_EQ(taken(_strconcat(kNull, kNull)), "");
    char* list = _stradd(_stradd(_stradd(nullptr, ",", "a"), ",", "b"), nullptr, "c");
    EXPECT_EQ(_stradd(list, ",", nullptr), list);
    EXPECT_EQ(taken(list), "a,bc");
}

TEST(Extraction, CutsTheMarkedSpan)
{
    const char* const rows[][5] = {{"k=[v];rest", "[", "]", "v", "k=;rest"},
        {"[]", "[", "]", "", ""}, {"ab[", "[", "]", "(null)", "ab["},
        {"ab[c", "[", "]", "(null)", "ab[c"}, {"]a[", "[", "]", "(null)", "]a["},
        {"a", "", "]", "(null)", "a"}, {"[a", "[", "", "(null)", "[a"}};
    for (const auto& [given, begin, end, found, rest] : rows) {
        std::string text = given;
        EXPECT_EQ(taken(_strfind(text.data(), begin, end)), found) << given;
        EXPECT_STREQ(text.c_str(), given);
        EXPECT_EQ(taken(_strfind(text.data(), begin, end, 1)), found) << given;
        EXPECT_STREQ(text.c_str(), rest);
    }
    EXPECT_EQ(taken(_strfind(nullptr, "[", "]", 1)), "(null)");
}
