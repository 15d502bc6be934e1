// Prints what the installation layout answers in a program of this name and place:
// layout-probe FUNCTION [CAPACITY] gives the result, "|" and the buffer.
#include "util/Layout.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv)
{
    const struct {
        const char* name;
        bool (*function)(char*, std::size_t);
    } functions[] = {{"module", osGetModulePath}, {"application", osGetApplicationPath},
        {"root", osGetModuleRoot}, {"brand", osGetBrandName}, {"library", osGetLibrary}};
    const std::size_t capacity = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : kPathCapacity;
    for (const auto& [name, function] : functions) {
        if (argc > 1 && std::strcmp(argv[1], name) == 0) {
            char* buffer = new char[capacity + 1];
            buffer[0] = '!';
            const bool result = function(buffer, capacity);
            std::printf("%d|%s", result ? 1 : 0, capacity == 0 ? "" : buffer);
            const bool untouched = capacity > 0 || buffer[0] == '!';
            delete[] buffer;
            return untouched ? 0 : 1;
        }
    }
    return 1;
}
