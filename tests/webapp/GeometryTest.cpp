#include "webapp/Geometry.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

constexpr Size kArea = {1920, 1040};

} // namespace

TEST(InitialRect, FollowsTheOptions)
{
    using Option = std::optional<std::uint32_t>;
    constexpr std::uint32_t kBelowZero = 0;
    const std::tuple<Option, bool, Option, Size, WindowRect> rows[]
        = {{{}, false, {}, kArea, {{800, 264}, {320, 512}}},
            {0x00320032, false, {}, kArea, {{480, 260}, {960, 520}}},
            {0x00640064, false, {}, kArea, {{0, 0}, {1920, 1040}}},
            {0x00010064, false, 0, kArea, {{0, 0}, {19, 1040}}},
            {0x01F40190, false, 0, kArea, {{0, 0}, {500, 370}}},
            {0x0064012C, false, 0, kArea, {{0, 0}, {100, 270}}},
            {0x00320000, false, 0, kArea, {{0, 0}, {50, kBelowZero - 30}}},
            {0xFFFFFFFF, false, 0, kArea, {{0, 0}, {1920, 1010}}},
            {0, false, 0, kArea, {{0, 0}, {0, kBelowZero - 30}}},
            {0x01F40190, true, 0x000A0014, kArea, {{0, 0}, {1920, 1010}}},
            {{}, true, {}, {1920, 20}, {{0, 0}, {1920, kBelowZero - 10}}},
            {{}, false, 0x80148014, kArea, {{1580, 508}, {320, 512}}},
            {{}, false, 0x000A0014, kArea, {{10, 20}, {320, 512}}},
            {{}, false, 0x000A8014, kArea, {{10, 508}, {320, 512}}},
            {{}, false, {}, {319, 511}, {{0x7FFFFFFF, 0x7FFFFFFF}, {320, 512}}}};
    for (const auto& [size, fullscreen, position, area, rect] : rows) {
        EXPECT_EQ(wa_initial_rect({size, fullscreen, position}, area), rect)
            << size.value_or(0) << " " << position.value_or(0);
    }
}

TEST(ShownSize, TakesTwoSmallNumbersAsPercentages)
{
    EXPECT_EQ(wa_shown_size({50, 60}, kArea), (Size {960, 624}));
    EXPECT_EQ(wa_shown_size({0, 20}, kArea), (Size {0, 208}));
    EXPECT_EQ(wa_shown_size({100, 101}, kArea), (Size {100, 101}));
}

TEST(Resize, RefersToTheReferenceAndIsBounded)
{
    constexpr Size kReference = {800, 600};
    const std::tuple<std::uint32_t, bool, Size, Size, Size> rows[] = {
        {50, true, kReference, kArea, {400, 300}}, {0, true, kReference, kArea, {800, 600}},
        {150, true, kReference, {1024, 768}, {1024, 768}},
        {1024, false, kReference, kArea, {800, 1024}},
        {0x02800000, false, kReference, kArea, {640, 600}}, {10, true, {320, 512}, kArea, {64, 64}},
        {0, false, {0, 0xFFE2}, kArea, {64, 1040}},
        {0x00010001, false, kReference, {50, 40}, {50, 40}},
        {5368710, true, kReference, kArea, {64, 1040}}, // 800 times this wraps to 704
    };
    for (const auto& [value, percent, reference, area, size] : rows) {
        EXPECT_EQ(wa_resized(value, percent, reference, area), size) << value;
    }
}

TEST(MovedInside, KeepsTheFarEdgesInTheWorkArea)
{
    EXPECT_EQ(wa_moved_inside({1800, 100}, {300, 200}, kArea), (Position {1620, 100}));
    EXPECT_EQ(wa_moved_inside({1620, 840}, {300, 200}, kArea), (Position {1620, 840}));
    EXPECT_EQ(wa_moved_inside({10, 841}, {300, 200}, kArea), (Position {10, 840}));
    // A window left of the screen counts as inside: its far edge wraps to a small number.
    EXPECT_EQ(wa_moved_inside({0U - 10, 5}, {300, 200}, kArea), (Position {0U - 10, 5}));
}

TEST(PackedPair, KeepsSixteenBitsOfEach)
{
    EXPECT_EQ(packed_pair(0, 0U - 30), 0x0000FFE2U);
}
