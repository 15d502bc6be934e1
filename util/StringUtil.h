// StringUtil.h: primitives for NUL-terminated strings, narrow and wide, one contract for all.
//
// - A null pointer is an ordinary value with a fixed answer: length 0, nothing found, nothing
//   written, no new string. A comparison with a null operand gives -1, even with two.
// - Narrow characters order as signed 8-bit values, wide ones as signed 32-bit units; a string
//   that is a prefix of another orders before it, whatever character follows.
// - A character search never finds the terminator. A substring search answers null for an empty
//   haystack or needle. The mutable and the const overload of a search behave alike.
// - Copying and appending functions return `dst`; the caller ensures its capacity.
// - A new string is an array from array-new, which the receiver releases with array-delete (see
//   OwnedText in Owned.h). Running out of memory ends the process; it never gives null.
#pragma once

#include <cstddef>

namespace tovik {

/// Units before the terminator; 0 for null.
std::size_t _strlen(const char* s);
std::size_t _strlen(const wchar_t* s);
std::size_t _strlen(const unsigned char* s);

/// First occurrence of `c`; null for the character 0.
const char* _strchr(const char* s, char c);
char* _strchr(char* s, char c);
const wchar_t* _strchr(const wchar_t* s, wchar_t c);
wchar_t* _strchr(wchar_t* s, wchar_t c);

/// Last occurrence of `c`; null for the character 0.
const char* _strrchr(const char* s, char c);
char* _strrchr(char* s, char c);
const wchar_t* _strrchr(const wchar_t* s, wchar_t c);
wchar_t* _strrchr(wchar_t* s, wchar_t c);

/// Copies `src` with its terminator. A null `src` makes a narrow `dst` the empty string and
/// leaves a wide one as it is.
char* _strcpy(char* dst, const char* src);
wchar_t* _strcpy(wchar_t* dst, const wchar_t* src);

/// Copies at most `n` characters and a terminator; `dst` needs room for n + 1 units. Units after
/// the terminator are unchanged. Writes nothing when either operand is null.
char* _strncpy(char* dst, const char* src, std::size_t n);
wchar_t* _strncpy(wchar_t* dst, const wchar_t* src, std::size_t n);

/// Appends `src` to the string in `dst`.
char* _strcat(char* dst, const char* src);
wchar_t* _strcat(wchar_t* dst, const wchar_t* src);

/// Appends at most `n` characters of `src` and a terminator, for which `dst` needs room.
char* _strncat(char* dst, const char* src, std::size_t n);

/// Orders two strings: exactly -1, 0 or 1.
int _strcmp(const char* a, const char* b);
int _strcmp(const wchar_t* a, const wchar_t* b);

/// Orders the first `n` characters: exactly -1, 0 or 1; 0 when `n` is 0 and neither is null.
int _strncmp(const char* a, const char* b, std::size_t n);
int _strncmp(const wchar_t* a, const wchar_t* b, std::size_t n);

/// Compares with 'A' to 'Z' folded to lower case, whatever the locale. Returns the difference of
/// the first two folded characters that differ, or -1 or 1 when one string is a prefix of the
/// other.
int _strcasecmp(const char* a, const char* b);

/// As _strcasecmp() over the first `n` characters of each. A wide difference beyond the range of
/// an int is the nearest int.
int _strncasecmp(const char* a, const char* b, std::size_t n);
int _strncasecmp(const wchar_t* a, const wchar_t* b, std::size_t n);

/// First occurrence of `needle`.
const char* _strstr(const char* haystack, const char* needle);
char* _strstr(char* haystack, const char* needle);
const wchar_t* _strstr(const wchar_t* haystack, const wchar_t* needle);
wchar_t* _strstr(wchar_t* haystack, const wchar_t* needle);

/// Last occurrence of `needle`.
const char* _strrstr(const char* haystack, const char* needle);
char* _strrstr(char* haystack, const char* needle);

/// First occurrence of `needle`, whatever the case of ASCII letters.
const char* _stristr(const char* haystack, const char* needle);
char* _stristr(char* haystack, const char* needle);

/// New copy of `s`.
char* _strnew(const char* s);
wchar_t* _strnew(const wchar_t* s);

/// New array of n + 1 units, whatever the length of `s`, with at most its first `n` characters.
char* _strnew(const char* s, std::size_t n);
wchar_t* _strnew(const wchar_t* s, std::size_t n);

/// New copy of the balanced span of `text` from the first `open` to the `close` that matches it,
/// both included; null when it has none or a marker is empty. Different markers nest, and each of
/// two overlapping occurrences counts. A span between equal markers ends at the second one.
char* _strnew(const char* text, const char* open, const char* close);

/// New string of the parts in order; a null part counts as empty, the result is never null.
char* _strconcat(const char* a, const char* b);
char* _strconcat(const char* a, const char* b, const char* c);
char* _strconcat(const char* a, const char* b, const char* c, const char* d);
char* _strconcat(const char* a, const char* b, const char* c, const char* d, const char* e);

/// Appends `separator` and `add` to `s`, an array from array-new or null: releases that array and
/// returns a new one. A null `s` gives a copy of `add` without separator; a null `add` gives `s`.
char* _stradd(char* s, const char* separator, const char* add);

/// New string of the text between the first `begin` and the next `end`; null when a marker is
/// missing or empty. A non-zero `cut` removes the span from `text`, markers included.
char* _strfind(char* text, const char* begin, const char* end, unsigned char cut);
char* _strfind(char* text, const char* begin, const char* end);

} // namespace tovik
