// ElfFile.h: whether a file can be a shared library of this machine, told before the loader maps
// it: the loader's own words are few, and a library that was cut off ends its process later.
#pragma once

#include <string>

/// What keeps the file from being one, or the empty string.
std::string elf_fault(const std::string& path);

/// Whether the file is a shared library of this machine that other code finds this name in.
bool exports(const std::string& path, const std::string& name);
