// Export.h: the mark of an exported symbol; all other symbols of the library are hidden.
#pragma once

/// Makes a declared function visible to programs that load the library.
#define TOVIK_EXPORT __attribute__((visibility("default")))
