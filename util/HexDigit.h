// HexDigit.h: the value of a hexadecimal digit, for number reading and URL decoding.
#pragma once

/// 0 to 15 for a hexadecimal digit of either case, -1 for any other character.
constexpr int hex_digit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}
