// The primitives on texts that the compiler sees whole, so that it may take a read beyond them for
// impossible: in one unit with them (ONE_UNIT), or linked by a linker that optimises.
#ifdef ONE_UNIT
#include "util/StringUtil.cpp"
#else
#include "util/StringUtil.h"
#endif

#include <cstdlib>

constexpr bool (*kHold[])(char) = {
    [](char b) {
        char text[4] = {'a', b};
        return tovik::_strlen(text) == 2;
    },
    [](char b) {
        char text[4] = {b, 'a', b};
        return tovik::_strrchr(text, b) == text + 2;
    },
    [](char b) {
        char text[4] = {'a'};
        const char more[4] = {b};
        return tovik::_strstr(tovik::_strcat(text, more), more) == text + 1;
    },
};

int main(int argc, char**)
{
    for (auto* holds : kHold) {
        if (!holds(static_cast<char>('a' + argc))) {
            return EXIT_FAILURE;
        }
    }
}
