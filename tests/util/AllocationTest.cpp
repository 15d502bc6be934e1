// Argument lists with each allocation failing in turn; what a failure leaves behind shows under
// AddressSanitizer. The linker hands the calls of malloc() and calloc() in this program's objects
// to the functions below.
#include "util/Arguments.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

int allocationsLeft = -1; // until one fails; below 0 none does

bool refused()
{
    return allocationsLeft >= 0 && allocationsLeft-- == 0;
}

/// Makes a list with the first, second, ... allocation failing, until none fails any more. Returns
/// how many allocations the list takes.
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

TEST(AllocationFailure, FailsTheWholeList)
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
