// Geometry.h: where the window stands and how large it is, as pure functions of numbers. All
// arithmetic is unsigned with 32 bits; differences wrap below zero. The origin of the work area
// counts as 0,0.
#pragma once

#include <cstdint>
#include <optional>

struct Size {
    std::uint32_t width;
    std::uint32_t height;

    bool operator==(const Size&) const = default;
};

struct Position {
    std::uint32_t x;
    std::uint32_t y;

    bool operator==(const Position&) const = default;
};

struct WindowRect {
    Position position;
    Size size;

    bool operator==(const WindowRect&) const = default;
};

/// Packed pair: width or x in the high 16 bits, height or y in the low 16 bits.
constexpr std::uint32_t packed_pair(std::uint32_t high, std::uint32_t low)
{
    return high << 16 | (low & 0xFFFF);
}

constexpr std::uint32_t packed_pair(Size size)
{
    return packed_pair(size.width, size.height);
}
constexpr std::uint32_t packed_pair(Position at)
{
    return packed_pair(at.x, at.y);
}
constexpr std::uint32_t high_half(std::uint32_t pair)
{
    return pair >> 16;
}
constexpr std::uint32_t low_half(std::uint32_t pair)
{
    return pair & 0xFFFF;
}
constexpr Size size_of_pair(std::uint32_t pair)
{
    return {high_half(pair), low_half(pair)};
}

/// The options that decide the initial rectangle of the window.
struct WindowRectOptions {
    std::optional<std::uint32_t> size; // "-size": packed pair, pixels or percentages
    bool fullscreen; // "-fullscreen": takes the place of both others
    std::optional<std::uint32_t> position; // "-position": packed pair with edge flags
};

/// Rectangle of the window that the command line asks for: 320 wide, 512 high without "-size",
/// centred without "-position". A position of 0,0 leaves the place to the window manager.
WindowRect wa_initial_rect(const WindowRectOptions& options, Size workArea);

/// Size of the window to show: a width and a height of at most 100 each are percentages.
Size wa_shown_size(Size size, Size workArea);

/// Size that a resize asks for, at least 64 and at most the work area in each dimension.
/// value    a percentage of the reference size (0 restores it), or a packed pair of pixels in
///          which a half of 0 stands for that of the reference size
Size wa_resized(std::uint32_t value, bool percent, Size reference, Size workArea);

/// Position of a window moved back where it sticks out of the right or bottom edge; unchanged
/// where it does not.
Position wa_moved_inside(Position at, Size size, Size workArea);
