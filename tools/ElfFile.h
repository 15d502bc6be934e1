// ElfFile.h: whether a file can be a shared library of this machine, found out before the loader
// maps it: the loader's messages say little, and a library that is cut off ends the process with
// SIGBUS when a missing page is used.
#pragma once

#include <string>

/// What keeps the file from being one, worded to follow its path; empty when nothing does.
std::string elf_fault(const std::string& path);

/// Whether the file is a shared library of this machine that defines this dynamic symbol.
bool exports(const std::string& path, const std::string& name);
