#include "webapp/Geometry.h"

#include <algorithm>

namespace {

constexpr Size kDefaultSize = {320, 512};

/// Lowest width and height of the window, at its start and after each resize.
constexpr std::uint32_t kMinimum = 64;

/// Height of the title bar, subtracted from the height of a window that pixels or "-fullscreen"
/// give.
constexpr std::uint32_t kTitleBar = 30;

bool is_percentage(std::uint32_t value)
{
    return value >= 1 && value <= 100;
}

Size scaled(Size size, Size percent)
{
    return {size.width * percent.width / 100, size.height * percent.height / 100};
}

Size size_from_option(std::uint32_t option, Size workArea)
{
    const Size size = size_of_pair(option);
    if (is_percentage(size.width) && is_percentage(size.height)) {
        return scaled(workArea, size);
    }
    return {
        std::min(size.width, workArea.width), std::min(size.height, workArea.height) - kTitleBar};
}

/// One coordinate of "-position": the distance from the left or top edge of the work area or, with
/// the top bit set, the distance of the right or bottom edge of the window from that of the area.
std::uint32_t coordinate(std::uint32_t half, std::uint32_t length, std::uint32_t room)
{
    return (half & 0x8000) == 0 ? half : room - length - (half & 0x7FFF);
}

std::uint32_t bounded(std::uint32_t length, std::uint32_t room)
{
    return std::min(std::max(length, kMinimum), room);
}

} // namespace

WindowRect wa_initial_rect(const WindowRectOptions& options, Size workArea)
{
    if (options.fullscreen) {
        return {{0, 0}, {workArea.width, workArea.height - kTitleBar}};
    }
    const Size size = options.size ? size_from_option(*options.size, workArea) : kDefaultSize;
    if (options.position) {
        return {{coordinate(high_half(*options.position), size.width, workArea.width),
                    coordinate(low_half(*options.position), size.height, workArea.height)},
            size};
    }
    return {{(workArea.width - size.width) / 2, (workArea.height - size.height) / 2}, size};
}

Size wa_shown_size(Size size, Size workArea)
{
    return size.width <= 100 && size.height <= 100 ? scaled(workArea, size) : size;
}

Size wa_resized(std::uint32_t value, bool percent, Size reference, Size workArea)
{
    Size size = reference;
    if (percent && value != 0) {
        size = scaled(reference, {value, value});
    } else if (!percent) {
        const Size wanted = size_of_pair(value);
        size = {wanted.width == 0 ? reference.width : wanted.width,
            wanted.height == 0 ? reference.height : wanted.height};
    }
    return {bounded(size.width, workArea.width), bounded(size.height, workArea.height)};
}

Position wa_moved_inside(Position at, Size size, Size workArea)
{
    return {at.x + size.width > workArea.width ? workArea.width - size.width : at.x,
        at.y + size.height > workArea.height ? workArea.height - size.height : at.y};
}
