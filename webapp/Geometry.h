// Geometry.h: position and size of the window, as pure functions of numbers. All arithmetic is
// unsigned with 32 bits; differences wrap below zero. The origin of the work area counts as 0,0.
#pragma once

#include <cstdint>
#include <optional>

/// Width and height in pixels or percentages.
struct Size {
    std::uint32_t width; // from the left to the right edge
    std::uint32_t height; // from the top to the bottom edge

    /// Equal in both.
    bool operator==(const Size&) const = default;
};

/// Place of the top left corner of the window, in pixels.
struct Position {
    std::uint32_t x; // from the left edge of the work area
    std::uint32_t y; // from the top edge of the work area

    /// Equal in both.
    bool operator==(const Position&) const = default;
};

/// Place and size of the window.
struct WindowRect {
    Position position; // of the top left corner
    Size size; // in pixels

    /// Equal in both.
    bool operator==(const WindowRect&) const = default;
};

/// Packed pair: width or x in the high 16 bits, height or y in the low 16 bits.
constexpr std::uint32_t packed_pair(std::uint32_t high, std::uint32_t low)
{
    return high << 16 | (low & 0xFFFF);
}

/// Packed pair of a size.
constexpr std::uint32_t packed_pair(Size size)
{
    return packed_pair(size.width, size.height);
}

/// Packed pair of a position.
constexpr std::uint32_t packed_pair(Position at)
{
    return packed_pair(at.x, at.y);
}

/// Width or x of a packed pair.
constexpr std::uint32_t high_half(std::uint32_t pair)
{
    return pair >> 16;
}

/// Height or y of a packed pair.
constexpr std::uint32_t low_half(std::uint32_t pair)
{
    return pair & 0xFFFF;
}

/// A packed pair as a size.
constexpr Size size_of_pair(std::uint32_t pair)
{
    return {high_half(pair), low_half(pair)};
}

/// The options that decide the initial rectangle of the window.
struct WindowRectOptions {
    std::optional<std::uint32_t> size; // "-size": packed pair, pixels or percentages
    bool fullscreen; // "-fullscreen": replaces both others
    std::optional<std::uint32_t> position; // "-position": packed pair with edge flags
};

/// Rectangle of the window that the command line asks for: 320 wide, 512 high without "-size",
/// centred without "-position". With the position 0,0 the window manager places the window.
WindowRect wa_initial_rect(const WindowRectOptions& options, Size workArea);

/// Size of the window to show: a width and a height of at most 100 each are percentages.
Size wa_shown_size(Size size, Size workArea);

/// Size that a resize asks for, at least 64 and at most the work area in each dimension.
/// value      with `percent` a percentage of `reference`, 0 for all of it; otherwise a packed pair
///            of pixels, in which 0 stands for the width or height of `reference`
/// reference  the size that the window was first shown with
///
///     wa_resized(50, true, {400, 300}, {1920, 1040});          // 200 x 150
///     wa_resized(0x02800000, false, {400, 300}, {1920, 1040}); // 640 x 300
Size wa_resized(std::uint32_t value, bool percent, Size reference, Size workArea);

/// Position of a window after it is moved back inside the right and bottom edges of the work area.
Position wa_moved_inside(Position at, Size size, Size workArea);
