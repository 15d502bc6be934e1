#include "util/StringUtil.h"

#include "util/Owned.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>
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

int sign(int value)
{
    return (value > 0) - (value < 0);
}

} // namespace

TEST(StringLength, OfNullIsZero)
{
    EXPECT_EQ(_strlen(kNull), 0U);
    EXPECT_EQ(_strlen(kWideNull), 0U);
    EXPECT_EQ(_strlen(L"ab"), 2U);
    EXPECT_EQ(_strlen(reinterpret_cast<const unsigned char*>("\xff\x80")), 2U);
}

TEST(CharacterSearch, NeverFindsTheTerminator)
{
    char text[] = "a/b/c";
    EXPECT_EQ(_strchr(text, '/'), text + 1);
    EXPECT_EQ(_strrchr(text, '/'), text + 3);
    EXPECT_EQ(_strrchr(text, 'a'), text);
    wchar_t wide[] = L"a/b/c";
    EXPECT_EQ(_strchr(wide, L'/'), wide + 1);
    EXPECT_EQ(_strrchr(wide, L'/'), wide + 3);
    for (const char* s : {kNull, "", "abc"}) {
        EXPECT_EQ(_strchr(s, '\0'), nullptr);
        EXPECT_EQ(_strrchr(s, '\0'), nullptr);
        EXPECT_EQ(_strchr(s, 'x'), nullptr);
        EXPECT_EQ(_strrchr(s, 'x'), nullptr);
    }
}

TEST(Copying, KeepsItsNullContractAndAlwaysTerminates)
{
    char text[8] = "before";
    wchar_t wide[8] = L"before";
    EXPECT_STREQ(_strcpy(text, kNull), "");
    EXPECT_STREQ(_strcpy(wide, kWideNull), L"before");
    EXPECT_STREQ(_strcpy(text, "before"), "before");
    EXPECT_STREQ(_strncpy(text, kNull, 3), "before");
    EXPECT_STREQ(_strcat(text, kNull), "before");
    EXPECT_STREQ(_strncat(text, kNull, 3), "before");
    EXPECT_STREQ(_strncpy(text, "hello", 3), "hel");
    EXPECT_EQ(text[4], 'r') << "the rest is not filled";
    EXPECT_STREQ(_strncpy(text, "hello", 0), "");
    EXPECT_STREQ(_strncpy(wide, L"hello", 3), L"hel");
    EXPECT_STREQ(_strcat(wide, L"p"), L"help");
    EXPECT_STREQ(_strncat(_strcpy(text, "ab"), "xyz", 2), "abxy");
    EXPECT_EQ(_strcpy(static_cast<char*>(nullptr), "x"), nullptr);
    EXPECT_EQ(_strncpy(static_cast<char*>(nullptr), "x", 1), nullptr);
    EXPECT_EQ(_strcat(static_cast<char*>(nullptr), "x"), nullptr);
    EXPECT_EQ(_strcat(static_cast<wchar_t*>(nullptr), L"x"), nullptr);
    EXPECT_EQ(_strncat(nullptr, "x", 1), nullptr);
}

TEST(Comparison, OrdersSignedWithTheEndFirst)
{
    const struct {
        const char* a;
        const char* b;
        std::size_t n;
        int whole;
        int bounded;
    } rows[] = {
        {nullptr, nullptr, 0, -1, -1},
        {nullptr, "", 1, -1, -1},
        {"", nullptr, 1, -1, -1},
        {"", "", 1, 0, 0},
        {"", "a", 1, -1, -1},
        {"a", "", 1, 1, 1},
        {"\xe9", "a", 1, -1, -1},
        {"", "\xe9", 1, -1, -1},
        {"\xe9", "", 1, 1, 1},
        {"abc", "abd", 2, -1, 0},
        {"ab", "ab", 5, 0, 0},
        {"ab", "abc", 5, -1, -1},
        {"b", "a", 0, 1, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(_strcmp(row.a, row.b), row.whole) << row.a << " " << row.b;
        EXPECT_EQ(_strncmp(row.a, row.b, row.n), row.bounded) << row.a << " " << row.b;
    }
    const wchar_t negative[] = {WCHAR_MIN, 0};
    EXPECT_EQ(_strcmp(negative, L"a"), -1);
    EXPECT_EQ(_strcmp(L"", negative), -1);
    EXPECT_EQ(_strncmp(L"abc", L"abd", 2), 0);
    EXPECT_EQ(_strncmp(kWideNull, L"", 0), -1);
}

TEST(FoldedComparison, GivesTheDifferenceOfTheFirstPair)
{
    const struct {
        const char* a;
        const char* b;
        std::size_t n;
        int result;
    } rows[] = {
        {"Hello", "hELLO", 9, 0},
        {"ab", "aD", 9, -2},
        {"ab", "abc", 9, -1},
        {"abc", "AB", 9, 1},
        {"abX", "ABy", 2, 0},
        {"a", "\xe9", 9, 'a' + 0x17},
        {"\xc9", "\xe9", 9, -32}, // only ASCII letters fold
        {"", "\xe9", 9, -1},
        {"@[", "`{", 9, -32},
        {nullptr, nullptr, 0, -1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(_strncasecmp(row.a, row.b, row.n), row.result) << row.a << " " << row.b;
        if (row.n == 9) {
            EXPECT_EQ(_strcasecmp(row.a, row.b), row.result) << row.a << " " << row.b;
        }
    }
    const wchar_t lowest[] = {WCHAR_MIN, 0};
    const wchar_t highest[] = {WCHAR_MAX, 0};
    EXPECT_EQ(_strncasecmp(highest, lowest, 1), INT_MAX);
    EXPECT_EQ(_strncasecmp(lowest, highest, 1), INT_MIN);
    EXPECT_EQ(_strncasecmp(L"ABC", L"abd", 2), 0);
}

TEST(SubstringSearch, RefusesEmptyOperands)
{
    const struct {
        const char* haystack;
        const char* needle;
        int first;
        int last;
        int folded;
    } rows[] = {
        {"abab", "ab", 0, 2, 0},
        {"abc", "abc", 0, 0, 0},
        {"ab", "abc", -1, -1, -1},
        {"aaab", "aab", 1, 1, 1},
        {"Content-Type", "TYPE", -1, -1, 8},
        {"abc", "", -1, -1, -1},
        {"", "a", -1, -1, -1},
        {"", "", -1, -1, -1},
        {nullptr, "a", -1, -1, -1},
        {"a", nullptr, -1, -1, -1},
    };
    const auto offset = [](const char* haystack, const char* found) {
        return found == nullptr ? -1 : static_cast<int>(found - haystack);
    };
    for (const auto& row : rows) {
        const auto name = testing::Message() << row.haystack << " in " << row.needle;
        EXPECT_EQ(offset(row.haystack, _strstr(row.haystack, row.needle)), row.first) << name;
        EXPECT_EQ(offset(row.haystack, _strrstr(row.haystack, row.needle)), row.last) << name;
        EXPECT_EQ(offset(row.haystack, _stristr(row.haystack, row.needle)), row.folded) << name;
    }
    wchar_t wide[] = L"abab";
    EXPECT_EQ(_strstr(wide, L"ba"), wide + 1);
    EXPECT_EQ(_strstr(wide, L""), nullptr);
}

TEST(NewStrings, HaveTheRequestedSpan)
{
    const char* const spans[][4] = {
        {"x(a(b)c)y", "(", ")", "(a(b)c)"},
        {"x(a(b", "(", ")", "(null)"},
        {"a'b'c", "'", "'", "'b'"},
        {"a'b", "'", "'", "(null)"},
        {"'''", "''", "''", "(null)"},
        {"((a)", "((", ")", "((a)"},
        {"(((a)))", "((", "))", "(((a)))"}, // overlapping markers count each
        {"<<>x>>", "<<", ">", "<<>"},
        {"(a)", "(", "", "(null)"},
        {"(a)", "(", nullptr, "(null)"},
        {"(a)", "", ")", "(null)"},
        {nullptr, "(", ")", "(null)"},
    };
    for (const auto& [text, open, close, expected] : spans) {
        EXPECT_EQ(taken(_strnew(text, open, close)), expected) << text << open << close;
    }
    EXPECT_EQ(taken(_strnew("abc", 1)), "a");
    EXPECT_EQ(taken(_strnew("a", 5)), "a");
    EXPECT_EQ(taken(_strnew(kNull, 5)), "(null)");
    EXPECT_EQ(taken(_strnew(kNull)), "(null)");
    const std::unique_ptr<wchar_t[]> wide(_strnew(L"abc", 2));
    EXPECT_STREQ(wide.get(), L"ab");
    EXPECT_EQ(_strnew(kWideNull), nullptr);
    EXPECT_EQ(taken(_strconcat("a", nullptr, "b")), "ab");
    EXPECT_EQ(taken(_strconcat("a", "b", "c", "", "e")), "abce");
    EXPECT_EQ(taken(_strconcat(kNull, kNull)), "");
}

TEST(NewStrings, AccumulateWithoutALeadingSeparator)
{
    char* list = _stradd(nullptr, ",", "a");
    EXPECT_STREQ(list, "a");
    list = _stradd(list, ",", "b");
    EXPECT_STREQ(list, "a,b");
    list = _stradd(list, nullptr, "c");
    EXPECT_EQ(_stradd(list, ",", nullptr), list);
    EXPECT_EQ(taken(list), "a,bc");
}

TEST(Extraction, CutsTheMarkedSpan)
{
    const struct {
        const char* text;
        const char* begin;
        const char* end;
        const char* found;
        const char* rest;
    } rows[] = {
        {"k=[v];rest", "[", "]", "v", "k=;rest"},
        {"[]", "[", "]", "", ""},
        {"ab[", "[", "]", "(null)", "ab["},
        {"ab[c", "[", "]", "(null)", "ab[c"},
        {"]a[", "[", "]", "(null)", "]a["},
        {"a", "", "]", "(null)", "a"},
        {"[a", "[", "", "(null)", "[a"},
    };
    for (const auto& row : rows) {
        std::string text = row.text;
        EXPECT_EQ(taken(_strfind(text.data(), row.begin, row.end)), row.found) << row.text;
        EXPECT_STREQ(text.c_str(), row.text);
        EXPECT_EQ(taken(_strfind(text.data(), row.begin, row.end, 1)), row.found) << row.text;
        EXPECT_STREQ(text.c_str(), row.rest);
    }
    EXPECT_EQ(taken(_strfind(nullptr, "[", "]", 1)), "(null)");
}

// Texts of few different characters at every alignment, so that searches meet many candidates.
TEST(Strings, AgreeWithPlainModelsOnRandomTexts)
{
    std::mt19937 random(1);
    const auto text = [&random](std::size_t longest) {
        std::string made(random() % (longest + 1), ' ');
        for (char& c : made) {
            c = "ab\xe9"[random() % 3];
        }
        return made;
    };
    for (int round = 0; round < 20000; ++round) {
        const std::string a = text(70);
        const std::string b = text(round % 2 == 0 ? 3 : 70);
        const std::size_t n = random() % 70;
        const char* const s = a.c_str();
        ASSERT_EQ(_strlen(s), a.size());
        const auto at = [&](std::size_t i) { return i == std::string::npos ? nullptr : s + i; };
        ASSERT_EQ(_strchr(s, 'b'), at(a.find('b')));
        ASSERT_EQ(_strrchr(s, 'b'), at(a.rfind('b')));
        ASSERT_EQ(_strstr(s, b.c_str()), b.empty() ? nullptr : at(a.find(b))) << a << " " << b;
        ASSERT_EQ(_strrstr(s, b.c_str()), b.empty() ? nullptr : at(a.rfind(b))) << a << " " << b;
        const auto order = [](const std::string& left, const std::string& right) {
            return std::basic_string<signed char>(left.begin(), left.end())
                .compare(std::basic_string<signed char>(right.begin(), right.end()));
        };
        ASSERT_EQ(_strcmp(s, b.c_str()), sign(order(a, b)));
        ASSERT_EQ(_strncmp(s, b.c_str(), n), sign(order(a.substr(0, n), b.substr(0, n))));
    }
}
