// Characters.h: the characters of a text in UTF-8, and which of them a terminal would execute.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

/// A character of a text in UTF-8.
struct Character {
    /// In bytes; 0 for none.
    std::size_t length;
    unsigned long value;
};

/// The UTF-8 character at the start of `text`, which is not empty.
inline Character first_character(std::string_view text)
{
    constexpr struct {
        std::size_t length;
        unsigned char mask;
        unsigned char lead;
        unsigned long lowest;
    } kForms[] = {{1, 0x80, 0x00, 0}, {2, 0xE0, 0xC0, 0x80}, {3, 0xF0, 0xE0, 0x800},
        {4, 0xF8, 0xF0, 0x10000}};
    for (const auto& [length, mask, lead, lowest] : kForms) {
        const auto first = static_cast<unsigned char>(text[0]);
        if ((first & mask) != lead || text.size() < length) {
            continue;
        }
        unsigned long value = first & ~mask & 0xFFU;
        for (std::size_t i = 1; i < length; ++i) {
            const auto byte = static_cast<unsigned char>(text[i]);
            if ((byte & 0xC0U) != 0x80) {
                return {};
            }
            value = value << 6 | (byte & 0x3FU);
        }
        const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
        const bool invalid = value < lowest || value > 0x10FFFF || surrogate;
        return invalid ? Character {} : Character {length, value};
    }
    return {};
}

/// Whether a terminal would execute the character, break the line at it, or reorder its neighbours.
inline bool is_control(unsigned long value)
{
    constexpr std::pair<unsigned long, unsigned long> kRanges[] = {{0, 0x1F}, {0x7F, 0x9F},
        {0x61C, 0x61C}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}};
    return std::any_of(std::begin(kRanges), std::end(kRanges),
        [value](const auto& range) { return value >= range.first && value <= range.second; });
}
