// CommandLine.cpp: runs the library at argv[1] with the command line that the file argv[2] holds,
// through EntryAdmin, which accepts one of any length.
#include <cstdio>
#include <dlfcn.h>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "Usage: %s LIBRARY FILE\n", argv[0]);
        return 2;
    }
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    void* symbol = library == nullptr ? nullptr : dlsym(library, "EntryAdmin");
    if (symbol == nullptr) {
        std::fprintf(stderr, "%s: %s\n", argv[0], dlerror());
        return 2;
    }
    std::ifstream file(argv[2], std::ios::binary);
    const std::string commandLine(std::istreambuf_iterator<char>(file), {});
    auto* entry = reinterpret_cast<int (*)(void*, void*, const char*)>(symbol);
    return entry(nullptr, nullptr, commandLine.c_str());
}
