// Arguments.h: argument lists, option lookup, and numbers read from option texts.
//
// An argument list is an array of `count` strings and a null terminator; the count is kept beside
// it. The array and each string come from malloc, so C code may build and release lists too. The
// lookups accept a list with its count as argument vector.
#pragma once

#include "util/Owned.h"

#include <cstdint>

/// Looks up the option `name` among argv[0] to argv[argc - 1]. The first equal entry wins; a null
/// entry equals no name. Returns 1 with the next argument in `*value`, or with the empty string
/// when there is no next argument or it is null or begins with "-". Returns 0 with null in `*value`
/// when the option is absent. The value points into `argv` or at a static text.
int get_argument(int argc, char** argv, const char* name, const char** value);

/// The same lookup for a number: stores the low 32 bits of what string2number() reads, 0 for a
/// missing value. `*value` is unchanged when the option is absent; `value` may be null.
int get_argument(int argc, char** argv, const char* name, unsigned int* value);

/// 1 when the option `name` is present, else 0.
int has_argument(int argc, char** argv, const char* name);

/// Splits a command line into a new argument list, released with free_argument_list(), and stores
/// its length in `*count`. Spaces separate arguments. An argument that begins with a double quote
/// ends at the next double quote; no character escapes one. An empty or null text gives no
/// argument, a text of spaces alone one empty argument. Returns null, with `*count` unchanged and
/// nothing left allocated, when memory runs out.
char** alloc_argument_list(const char* text, int* count);

/// Copies two argument lists into a new one, first before second.
/// first, second            arrays of strings; a null entry is copied as the empty string
/// firstCount, secondCount  entries to copy from each; below 1 copies none
/// Returns a list of the copies, released with free_argument_list(); null, with nothing left
/// allocated, when memory runs out.
char** append_argument_list(char** first, int firstCount, char** second, int secondCount);

/// Releases a list and its strings up to the first null entry; accepts null.
void free_argument_list(char** list);

/// An argument list.
using OwnedList = std::unique_ptr<char*[], ReleaseWith<free_argument_list>>;

/// Value of the hexadecimal digits in `text`, which is not null. Other characters are skipped, and
/// only the last eight digits count.
std::uint32_t hex2num(const char* text);

/// Number at the start of `text`, which is not null: hexadecimal after a lower-case "0x", else
/// decimal as strtol() reads it, saturating at the limits of a long.
long string2number(const char* text);
