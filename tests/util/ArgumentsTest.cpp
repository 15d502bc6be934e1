#include "util/Arguments.h"

#include <climits>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

namespace {

std::vector<std::string> strings_of(char** list, int count)
{
    EXPECT_NE(list, nullptr);
    EXPECT_EQ(list[count], nullptr);
    return {list, list + count};
}

// The linker hands the calls of malloc() and calloc() in this program's objects to the functions
// below, from which the compiler, knowing malloc(), expects no change of a variable.
volatile int allocationsLeft = -1; // until one fails; below 0 none does

bool refused()
{
    const int left = allocationsLeft;
    allocationsLeft = left < 0 ? left : left - 1;
    return left == 0;
}

/// Makes a list with the first, second, ... allocation failing, until none fails any more. Returns
/// how many allocations the list needs.
template <typename Make> int fail_each(const Make& make)
{
    for (int number = 0;; ++number) {
        allocationsLeft = number;
        const OwnedList list(make());
        const bool failed = allocationsLeft < 0;
        allocationsLeft = -1;
        EXPECT_EQ(list == nullptr, failed) << number;
        if (!failed) {
            return number;
        }
    }
}

} // namespace

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);

void* __wrap_malloc(std::size_t size)
{
    return refused() ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size)
{
    return refused() ? nullptr : __real_calloc(count, size);
}
}

TEST(ArgumentList, IsSplitAtSpacesAndQuotes)
{
    const std::tuple<const char*, std::vector<std::string>> rows[] = {{nullptr, {}}, {"", {}},
        {"   ", {""}}, {"a \"b c\" d", {"a", "b c", "d"}}, {"  a   b  ", {"a", "b"}},
        {"\"\"", {""}}, {"\"\" x", {"", "x"}}, {"\"abc", {"abc"}}, {"\"ab\"cd", {"ab", "cd"}},
        {"\"ab\"\"cd\"", {"ab", "cd"}}, {"ab\"cd ef\"", {"ab\"cd", "ef\""}}, {"a \"", {"a", ""}},
        {"\"a\" ", {"a"}}, {"a\tb\n", {"a\tb\n"}}};
    for (const auto& [text, arguments] : rows) {
        int count = -1;
        const OwnedList list(alloc_argument_list(text, &count));
        EXPECT_EQ(strings_of(list.get(), count), arguments) << text;
    }
}

TEST(ArgumentList, IsJoinedAsFreshCopies)
{
    const char* first[] = {"a", "b", "c"};
    const char* second[] = {"d", nullptr, "f"};
    const std::tuple<int, int, std::vector<std::string>> rows[]
        = {{2, 3, {"a", "b", "d", "", "f"}}, {0, 1, {"d"}}, {1, -7, {"a"}}, {-1, 0, {}}};
    for (const auto& [firstCount, secondCount, joined] : rows) {
        const OwnedList list(append_argument_list(
            const_cast<char**>(first), firstCount, const_cast<char**>(second), secondCount));
        EXPECT_EQ(strings_of(list.get(), static_cast<int>(joined.size())), joined);
        EXPECT_TRUE(joined.empty() || list[0] != first[0]);
    }
    free_argument_list(nullptr);
}

// AddressSanitizer reports what a failure leaves allocated.
TEST(ArgumentList, FailsAsAWholeWithAnyAllocation)
{
    int count = 0;
    EXPECT_EQ(fail_each([&count] {
        EXPECT_EQ(count, 0) << "stored only with a list";
        return alloc_argument_list("a \"b c\" d", &count);
    }),
        4);
    EXPECT_EQ(count, 3);
    char first[] = "a";
    char* list[] = {first, first};
    EXPECT_EQ(fail_each([&list] { return append_argument_list(list, 2, list, 1); }), 4);
}

TEST(OptionLookup, TakesTheFirstMatchAndItsValue)
{
    const char* words[] = {"-url", "index.html", nullptr, "-verbose", "-size", "0x10", "-size", "7",
        "-n", nullptr, "-wait"};
    char** arguments = const_cast<char**>(words);
    constexpr int kCount = std::size(words);
    const std::tuple<const char*, int, const char*, unsigned int> rows[] = {
        {"-url", 1, "index.html", 0}, {"index.html", 1, "", 0}, // a null entry counts as no value
        {"-verbose", 1, "", 0}, {"-size", 1, "0x10", 16}, {"-n", 1, "", 0}, {"-wait", 1, "", 0},
        {"-WAIT", 0, nullptr, 99}, {nullptr, 0, nullptr, 99}};
    for (const auto& [name, found, expected, expectedNumber] : rows) {
        const char* value = "unset";
        unsigned int number = 99;
        EXPECT_EQ(get_argument(kCount, arguments, name, &value), found) << name;
        EXPECT_STREQ(value, expected) << name;
        EXPECT_EQ(get_argument(kCount, arguments, name, &number), found);
        EXPECT_EQ(number, expectedNumber) << name;
        EXPECT_EQ(has_argument(kCount, arguments, name), found) << name;
    }
    EXPECT_EQ(has_argument(0, nullptr, "-url") + has_argument(-1, nullptr, "-url"), 0);
}

TEST(StringToNumber, ReadsHexadecimalOnlyAfterALowerCasePrefix)
{
    const std::pair<const char*, long> rows[] = {{"0x1F", 31}, {"0X1F", 0}, {"-7", -7}, {"42", 42},
        {"08", 8}, {"", 0}, {"0x", 0}, {" +5z", 5}, {"0xFFFFFFFF", 4294967295},
        {"99999999999999999999", LONG_MAX}, {"-99999999999999999999", LONG_MIN}, {"0x1f", 31},
        {"0x12 34", 4660}, {"0x123456789", 591751049}, {"0xxyz", 0}};
    for (const auto& [text, number] : rows) {
        EXPECT_EQ(string2number(text), number) << text;
    }
}
