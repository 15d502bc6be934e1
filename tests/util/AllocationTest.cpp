// Argument lists with each allocation failing in turn. The linker hands the calls of malloc(),
// calloc() and free() in this program's objects to the functions below.
#include "util/Arguments.h"

#include <cstdlib>
#include <gtest/gtest.h>

extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void __real_free(void* block);
}

namespace {

int allocationsLeft = -1; // until one fails; below 0 none does
int held = 0;

bool refused()
{
    return allocationsLeft >= 0 && allocationsLeft-- == 0;
}

void* counted(void* block)
{
    held += block == nullptr ? 0 : 1;
    return block;
}

/// Makes a list with the first, second, ... allocation failing; expects null and nothing held
/// each time, until nothing fails any more. Returns how many allocations the list takes.
template <typename Make> int fail_each(const Make& make)
{
    for (int number = 0;; ++number) {
        allocationsLeft = number;
        char** list = make();
        const bool failed = allocationsLeft < 0;
        allocationsLeft = -1;
        if (!failed) {
            EXPECT_NE(list, nullptr);
            free_argument_list(list);
            EXPECT_EQ(held, 0);
            return number;
        }
        EXPECT_EQ(list, nullptr) << number;
        EXPECT_EQ(held, 0) << number;
    }
}

} // namespace

extern "C" {
void* __wrap_malloc(std::size_t size)
{
    return refused() ? nullptr : counted(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size)
{
    return refused() ? nullptr : counted(__real_calloc(count, size));
}

void __wrap_free(void* block)
{
    held -= block == nullptr ? 0 : 1;
    __real_free(block);
}
}

TEST(AllocationFailure, FailsTheWholeListAndLeaksNothing)
{
    int count = 77;
    EXPECT_EQ(fail_each([&count] {
        EXPECT_EQ(count, 77) << "stored only with a list";
        char** list = alloc_argument_list("a \"b c\" d", &count);
        count = list == nullptr ? count : 77;
        return list;
    }),
        4);
    char first[] = "a";
    char second[] = "b";
    char* lists[] = {first, second};
    EXPECT_EQ(fail_each([&lists] { return append_argument_list(lists, 2, lists, 1); }), 4);
}
