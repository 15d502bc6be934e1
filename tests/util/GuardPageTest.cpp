#include "util/MemoryUtil.h"
#include "util/StringUtil.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/mman.h>

using namespace tovik;

namespace {

constexpr std::size_t kPage = 65536; // a multiple of every processor's page
std::mt19937 random_number(1);

/// Start of a page between two that can be neither read nor written; it is never released.
char* guarded_page()
{
    void* memory = mmap(nullptr, 3 * kPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    char* page = static_cast<char*>(memory) + kPage;
    mprotect(page, kPage, PROT_READ | PROT_WRITE);
    return page;
}
char *const first = guarded_page(), *const second = guarded_page(), *const third = guarded_page();

/// `bytes` and room for `more` of them, at the start of the page, at its end, or across the edge
/// of a smaller page in it.
char* hold(char* page, const std::string& bytes, std::size_t more = 0)
{
    const std::size_t size = bytes.size() + more;
    const std::size_t offsets[] = {0, kPage - size, kPage / 2 - random_number() % (size + 1)};
    char* place = page + offsets[random_number() % 3];
    std::copy(bytes.begin(), bytes.end(), place);
    return place;
}

int sign(int value)
{
    return (value > 0) - (value < 0);
}

std::string folded(std::string text)
{
    std::replace(text.begin(), text.end(), 'A', 'a'); // the only capital of the texts below
    return text;
}

/// The searches of `b` in `a` agree with the models.
void expect_found(const std::string& a, const std::string& b)
{
    const char *s = hold(first, a + '\0'), *t = hold(second, b + '\0');
    const auto found
        = [&](std::size_t i) { return i == std::string::npos || b.empty() ? nullptr : s + i; };
    ASSERT_EQ(_strstr(s, t), found(a.find(b)));
    ASSERT_EQ(_strrstr(s, t), found(a.rfind(b)));
    ASSERT_EQ(_stristr(s, t), found(folded(a).find(folded(b))));
    std::string bytes = a, part = b;
    for (std::string* text : {&bytes, &part}) {
        std::replace(text->begin(), text->end(), 'b', '\0');
    }
    char* block = hold(third, bytes);
    const std::size_t place = bytes.find(part);
    ASSERT_EQ(_memfind(block, bytes.size(), hold(second, part), part.size()),
        place == std::string::npos ? nullptr : block + place);
}

int difference(const std::string& a, const std::string& b)
{
    const auto [left, right] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return left == a.end() || right == b.end()
        ? (left != a.end()) - (right != b.end())
        : static_cast<signed char>(*left) - static_cast<signed char>(*right);
}

} // namespace

TEST(Strings, KeepToTheirOperandsAndAgreeWithPlainModels)
{
    for (int round = 0; round < 100000; ++round) {
        std::string a(random_number() % 257, ' ');
        std::generate(a.begin(), a.end(), [] { return "aAb\xe9"[random_number() % 4]; });
        // A part of the first text, so that searches succeed, and often one letter more.
        const std::size_t n = random_number() % (round % 2 == 0 ? 257 : 6);
        const std::string b = a.substr(random_number() % (a.size() + 1) / (1 + round % 3 * 300), n)
            + (round % 5 == 0 ? "b" : "");
        const std::string head = a.substr(0, n);
        const char *s = hold(first, a + '\0'), *t = hold(second, b + '\0');
        const auto at = [&](std::size_t i) { return i == std::string::npos ? nullptr : s + i; };
        SCOPED_TRACE(a + " and " + b + " and " + std::to_string(n));
        ASSERT_EQ(_strlen(s), a.size());
        for (const char c : {'a', '\xe9', 'x', '\0'}) {
            ASSERT_EQ(_strchr(s, c), at(a.find(c)));
            ASSERT_EQ(_strrchr(s, c), at(a.rfind(c)));
        }
        ASSERT_EQ(_strcmp(s, t), sign(difference(a, b)));
        ASSERT_EQ(_strncmp(s, t, n), sign(difference(head, b.substr(0, n))));
        ASSERT_EQ(_strcasecmp(s, t), difference(folded(a), folded(b)));
        ASSERT_EQ(_strncasecmp(s, t, n), difference(folded(head), folded(b.substr(0, n))));
        ASSERT_EQ(_strcpy(hold(third, "", a.size() + 1), s), a);
        ASSERT_EQ(_strncpy(hold(third, "", n + 1), s, n), head);
        ASSERT_EQ(_strcat(hold(third, b + '\0', a.size()), s), b + a);
        ASSERT_EQ(_strncat(hold(third, b + '\0', n), s, n), b + head);
        ASSERT_EQ(_memcmp(s, t, b.size()), sign(std::memcmp(s, t, b.size())));
        ASSERT_NO_FATAL_FAILURE(expect_found(a, b));
    }
}

TEST(Searches, AgreeWithPlainModelsInTextsThatRepeat)
{
    const auto change = [](std::string& text, std::size_t letters) {
        for (; letters > 0; --letters) {
            text[random_number() % text.size()] = "aAb"[random_number() % 3];
        }
    };
    for (int round = 0; round < 20000; ++round) {
        std::string unit(1 + random_number() % 6, 'a');
        change(unit, unit.size());
        std::string a, b;
        while (a.size() < 1000) {
            a += unit;
        }
        b = a.substr(random_number() % 6, 1 + random_number() % 64);
        const std::string part = b;
        change(b, random_number() % 3);
        change(a, random_number() % 4);
        a.replace(random_number() % a.size(), round % 3 * b.size(), round % 3 == 0 ? part : b);
        SCOPED_TRACE(a + " and " + b);
        ASSERT_NO_FATAL_FAILURE(expect_found(a, b));
    }
}

// Compared at each place, the needles would keep a processor busy for minutes.
TEST(Searches, TakeNoLongerForNeedlesThatAlmostMatch)
{
    const std::string half(std::size_t {1} << 20, 'a');
    const std::string four = half + half + half + half;
    const std::string broken = half + 'b' + half.substr(1) + 'c';
    const std::pair<std::string, std::string> rows[] = {
        {four + four, half + half + 'b'}, {broken + broken + broken + broken, half + 'b' + half}};
    for (const auto& [text, needle] : rows) {
        EXPECT_EQ(_strstr(text.c_str(), needle.c_str()), nullptr);
        EXPECT_EQ(_strrstr(text.c_str(), needle.c_str()), nullptr);
        EXPECT_EQ(_stristr(text.c_str(), needle.c_str()), nullptr);
        std::string block = text;
        EXPECT_EQ(_memfind(block.data(), block.size(), needle.data(), needle.size()), nullptr);
    }
    EXPECT_EQ(_strrstr(four.c_str(), half.c_str()), four.c_str() + 3 * half.size());
}

TEST(Memory, KeepsToItsOperandsAndAgreesWithPlainModels)
{
    for (int round = 0; round < 100000; ++round) {
        const std::size_t from = random_number() % 64, to = random_number() % 64;
        const std::size_t n = random_number() % 257;
        std::string before(std::max(from, to) + n, ' ');
        std::generate(before.begin(), before.end(), std::ref(random_number));
        std::string ascending = before;
        for (std::size_t i = 0; i < n; ++i) {
            ascending[to + i] = ascending[from + i];
        }
        SCOPED_TRACE(testing::Message() << n << " from " << from << " to " << to);
        char* bytes = hold(first, before);
        ASSERT_EQ(_memcpy(bytes + to, bytes + from, n), bytes + to);
        ASSERT_EQ(std::string_view(bytes, before.size()), ascending);
        bytes = hold(first, before);
        _memmove(bytes + to, bytes + from, n);
        ASSERT_EQ(std::string_view(bytes, before.size()), before.replace(to, n, before, from, n));
        bytes = hold(second, "", n);
        _memset(bytes, 7, n);
        ASSERT_EQ(std::string_view(bytes, n), std::string(n, 7));
    }
}

TEST(Memory, NullOperandsAreAnswered)
{
    char byte = 'a';
    EXPECT_EQ(_memcpy(nullptr, &byte, 1), nullptr);
    EXPECT_EQ(_memcpy(&byte, nullptr, 1), &byte);
    _memset(nullptr, 0, 1);
    _memmove(nullptr, &byte, SIZE_MAX);
    _memmove(&byte, nullptr, SIZE_MAX);
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(_memcmp(nullptr, &byte, 1), 0);
    EXPECT_EQ(_memcmp(&byte, nullptr, 1), 0);
    EXPECT_EQ(_memfind(&byte, 1, nullptr, 1), &byte);
    EXPECT_EQ(_memfind(&byte, 1, nullptr, 2), nullptr);
    EXPECT_EQ(_memfind(nullptr, 1, "a", 1), nullptr);
}
