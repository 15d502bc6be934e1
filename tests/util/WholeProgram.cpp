// The primitives on texts that the compiler sees whole, so that it may treat a read beyond them as
// impossible: in one unit with the primitives, or with a linker that optimises.
#include "util/StringUtil.h"

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
    int wrong = 0;
    for (auto* holds : kHold) {
        wrong += holds(static_cast<char>('a' + argc)) ? 0 : 1;
    }
    return wrong;
}
