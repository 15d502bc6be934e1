// Prints what the installation layout answers in a program of this name and place:
// layout-probe FUNCTION [CAPACITY] gives the result, "|" and the buffer.
#include "util/Layout.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    const std::map<std::string, bool (*)(char*, std::size_t)> functions
        = {{"module", osGetModulePath}, {"application", osGetApplicationPath},
            {"root", osGetModuleRoot}, {"brand", osGetBrandName}, {"library", osGetLibrary}};
    const std::size_t capacity = argc > 2 ? std::stoul(argv[2]) : kPathCapacity;
    std::vector<char> buffer(capacity + 1, '!');
    const bool result = functions.at(argv[1])(buffer.data(), capacity);
    const char* beyond = buffer[capacity] == '!' ? "" : " and beyond";
    std::printf("%d|%.*s%s", result, static_cast<int>(capacity), buffer.data(), beyond);
}
