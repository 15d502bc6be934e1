// Arguments.h: argument lists, option lookup, and numbers read from option texts.
//
// An argument list is an array of `count` strings and a null terminator; the count is kept beside
// it. The array and each string come from malloc, so that a list may also be built and released
// by C code. A list with its count is a valid argument vector for the lookups.
#pragma once

#include "util/Owned.h"

#include <cstdint>

/// Looks up the option `name` among argv[0] to argv[argc - 1]; the first equal entry wins, and a
/// null entry equals no name. Returns 1 with the following argument in `*value`, or with the empty
/// string when the option stands last or the next argument is null or begins with "-"; 0 with
/// null when the option is absent. The value points into `argv` or at a static text.
int get_argument(int argc, char** argv, const char* name, const char** value);

/// The same lookup with the value read by string2number(), of which the low 32 bits are kept; a
/// missing value is 0. `*value` stays as it is when the option is absent; `value` may be null.
int get_argument(int argc, char** argv, const char* name, unsigned int* value);

/// 1 when the option `name` is present, else 0.
int has_argument(int argc, char** argv, const char* name);

/// Splits a command line into a new argument list, released with free_argument_list(), and stores
/// its length in `*count`. Spaces separate arguments; an argument that begins with a double quote
/// runs to the next one, and there is no escape character. An empty or null text gives no
/// argument, a text of spaces alone one empty argument. Null, with `*count` as it was and nothing
/// left allocated, when memory runs out.
char** alloc_argument_list(const char* text, int* count);

/// Joins two argument lists into a new one, first before second; neither is changed.
/// first, second            arrays of strings; a null entry is copied as the empty string
/// firstCount, secondCount  entries to copy from each; below 1 copies none
/// Returns a list of the copies, released with free_argument_list(); null, with nothing left
/// allocated, when memory runs out.
char** append_argument_list(char** first, int firstCount, char** second, int secondCount);

/// Releases a list and its strings, up to the first null entry; null is accepted.
void free_argument_list(char** list);

/// An argument list.
using OwnedList = std::unique_ptr<char*[], ReleaseWith<free_argument_list>>;

/// Value of the hexadecimal digits in `text`, which is not null; other characters are skipped and
/// only the last eight digits count.
std::uint32_t hex2num(const char* text);

/// Number at the start of `text`, which is not null: hexadecimal after a lower-case "0x", else
/// decimal as strtol() reads it, saturating at the limits of a long.
long string2number(const char* text);
