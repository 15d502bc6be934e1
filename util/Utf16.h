// Utf16.h: long texts between UTF-8 and the UTF-16 units of scripts.
#pragma once

#include <cstddef>

/// Writes UTF-16 units as UTF-8, without a terminator.
/// text  room for three bytes a unit
/// Returns the end of what is written; null, with the text undefined, for a surrogate without its
/// partner.
char* store_utf8(char* text, const unsigned short* units, std::size_t length);

/// Whether the text has no byte above 0x7F.
bool is_ascii(const char* text, std::size_t length);

/// Writes UTF-8 as UTF-16 units.
/// units  room for one unit a byte
/// text   `length` bytes and a terminator
/// Returns the end of what is written; null, with the units undefined, for what is not UTF-8.
unsigned short* store_utf16(unsigned short* units, const char* text, std::size_t length);
