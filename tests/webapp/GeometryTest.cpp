#include "webapp/Geometry.h"

#include <gtest/gtest.h>

namespace {

constexpr Size kArea = {1920, 1040};

testing::AssertionResult is(Size size, std::uint32_t width, std::uint32_t height)
{
    return size.width == width && size.height == height
        ? testing::AssertionSuccess()
        : testing::AssertionFailure() << size.width << " x " << size.height;
}

testing::AssertionResult is(Position at, std::uint32_t x, std::uint32_t y)
{
    return is(Size {at.x, at.y}, x, y);
}

} // namespace

TEST(InitialFrame, FollowsTheOptions)
{
    using Option = std::optional<std::uint32_t>;
    constexpr std::uint32_t kBelowZero = 0;
    const struct {
        Option size;
        bool fullscreen;
        Option position;
        Size area;
        Frame frame;
    } rows[] = {
        {{}, false, {}, kArea, {{800, 264}, {320, 512}}},
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
        {{}, false, {}, {319, 511}, {{0x7FFFFFFF, 0x7FFFFFFF}, {320, 512}}},
    };
    for (const auto& row : rows) {
        const Frame frame = initial_frame({row.size, row.fullscreen, row.position}, row.area);
        const auto line = &row - rows;
        EXPECT_TRUE(is(frame.position, row.frame.position.x, row.frame.position.y)) << line;
        EXPECT_TRUE(is(frame.size, row.frame.size.width, row.frame.size.height)) << line;
    }
}

TEST(ShownSize, TakesTwoSmallNumbersAsPercentages)
{
    EXPECT_TRUE(is(shown_size({50, 60}, kArea), 960, 624));
    EXPECT_TRUE(is(shown_size({0, 20}, kArea), 0, 208));
    EXPECT_TRUE(is(shown_size({100, 101}, kArea), 100, 101));
}

TEST(Resize, RefersToTheReferenceAndIsBounded)
{
    constexpr Size kReference = {800, 600};
    const struct {
        std::uint32_t value;
        bool percent;
        Size reference;
        Size area;
        Size size;
    } rows[] = {
        {50, true, kReference, kArea, {400, 300}}, {0, true, kReference, kArea, {800, 600}},
        {150, true, kReference, {1024, 768}, {1024, 768}},
        {1024, false, kReference, kArea, {800, 1024}},
        {0x02800000, false, kReference, kArea, {640, 600}}, {10, true, {320, 512}, kArea, {64, 64}},
        {0, false, {0, 0xFFE2}, kArea, {64, 1040}},
        {0x00010001, false, kReference, {50, 40}, {50, 40}},
        {5368710, true, kReference, kArea, {64, 1040}}, // 800 times this wraps to 704
    };
    for (const auto& row : rows) {
        const Size size = resized(row.value, row.percent, row.reference, row.area);
        EXPECT_TRUE(is(size, row.size.width, row.size.height)) << row.value;
    }
}

TEST(MovedInside, KeepsTheFarEdgesInTheWorkArea)
{
    EXPECT_TRUE(is(moved_inside({1800, 100}, {300, 200}, kArea), 1620, 100));
    EXPECT_TRUE(is(moved_inside({1620, 840}, {300, 200}, kArea), 1620, 840));
    EXPECT_TRUE(is(moved_inside({10, 841}, {300, 200}, kArea), 10, 840));
    // A window left of the screen counts as inside: its far edge wraps to a small number.
    EXPECT_TRUE(is(moved_inside({0U - 10, 5}, {300, 200}, kArea), 0U - 10, 5));
}

TEST(PackedPair, KeepsSixteenBitsOfEach)
{
    EXPECT_EQ(packed_pair(1920, 1040), 0x07800410U);
    EXPECT_EQ(packed_pair(0, 0U - 30), 0x0000FFE2U);
    EXPECT_TRUE(is(size_of_pair(0x07800410), 1920, 1040));
}
