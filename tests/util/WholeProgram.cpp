// The primitives on texts that the compiler sees whole, so that it may treat a read beyond them as
// impossible: in one unit with the primitives, or with a linker that optimises.
#include "util/MemoryUtil.h"
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
    [](char b) {
        const char text[2] = {b}, same[2] = {b}, more[3] = {b, 'a'};
        return tovik::_strcmp(text, same) == 0 && tovik::_strncmp(text, more, 2) == -1;
    },
    [](char b) {
        char bytes[3] = {b, 'a', b};
        const char part[2] = {'a', b}, other[2] = {'a', 'a'};
        return tovik::_memfind(bytes, 3, part, 2) == bytes + 1
            && tovik::_memcmp(part, other, 2) == 1;
    },
    [](char b) {
        char text[4] = {'A', b, 'A'};
        const char part[2] = {'a'};
        return tovik::_stristr(text, part) == text && tovik::_strrstr(text, "A") == text + 2
            && tovik::_strcasecmp(text + 2, part) == 0;
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
