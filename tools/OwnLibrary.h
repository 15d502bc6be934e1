// OwnLibrary.h: the library of the installation that a tool belongs to.
#pragma once

#include "host/ProductLayout.h"

#include <filesystem>
#include <stdexcept>

/// Path of the library, found from the path of this program, links resolved. The file may be
/// missing. Throws when the path cannot be read or has more than 4095 bytes.
inline std::filesystem::path own_library()
{
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    char path[PATH_MAX];
    if (!store_library_path(path, program.parent_path().parent_path().native(), "tovik")) {
        throw std::runtime_error("the path of the installation is too long");
    }
    return path;
}
