// Layout.h: where the files of the installation are, computed at run time from the paths of the
// running program and of this library, and the file primitives for that.
//
// A path buffer belongs to the caller and is passed with its capacity in bytes, terminator
// included; nothing is written beyond it, and a capacity of 0 writes nothing and fails.
#pragma once

#include <cstddef>

/// Capacity of every path buffer; longer paths are not used.
inline constexpr std::size_t kPathCapacity = 260;

/// Capacity of a brand name: five characters, the length of the default name, and the terminator.
inline constexpr std::size_t kBrandCapacity = sizeof "tovik";

/// Characters that a path keeps free for the brand name; no name needs that many.
inline constexpr std::size_t kBrandRoom = 8;

/// Characters that a directory's path leaves free for the name of the plug-in library.
inline constexpr std::size_t kLibraryNameRoom = sizeof "lib.so" - 1 + kBrandRoom;

/// Whether the path exists, whatever kind of file it is; false for null.
bool osFileExist(const char* path);

/// Receives a path that osFileExist() has looked at, and whether it exists.
using FileObserver = void (*)(const char* path, bool exists);

/// Told of each path looked at. Null in a run; tools and tests set it before they call the rooms.
extern FileObserver g_FileObserver;

/// Reads a whole small file into a new array (array-new, owned by the caller) without terminator.
/// Returns the number of bytes; 0 with `*data` null when the file cannot be opened, 0 with an
/// array to release when it is empty.
std::size_t osReadData(unsigned char** data, const char* path);

/// Replaces the path by its canonical form, with links and relative parts resolved. False, with the
/// path unchanged, when it cannot be resolved, is canonical already, or does not fit.
bool osTranslatePath(char* path, std::size_t capacity);

/// Canonical path of this library. False with an empty buffer when it is unknown or does not fit.
bool osGetModulePath(char* buffer, std::size_t capacity);

/// Canonical path of the running program, which is the first word of its command line, up to the
/// first space. A word without "/" is looked for in "/usr/bin/". False with an empty buffer when
/// the word is empty or does not fit.
bool osGetApplicationPath(char* buffer, std::size_t capacity);

/// Directory of this library with its trailing "/". False with an empty buffer when
/// osGetModulePath() fails, and with the path of the library when that holds no "/".
bool osGetModuleRoot(char* buffer, std::size_t capacity);

/// Brand name, 1 to 5 characters from the file name of this library, or "tovik" when that yields
/// none; the same for the life of the process. False with an empty buffer for a capacity below
/// kBrandCapacity.
bool osGetBrandName(char* buffer, std::size_t capacity);

/// Path of the plug-in library lib<brand>.so: beside the running program, else with the first
/// "/bin/" of that path replaced by "/lib/", else in "/usr/lib/". False when none of them exists;
/// the buffer then holds the last place, or is empty when its capacity is below 21.
bool osGetLibrary(char* buffer, std::size_t capacity);
