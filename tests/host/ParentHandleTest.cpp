#include "host/ParentHandle.h"

#include <gtest/gtest.h>
#include <string>
#include <tuple>

using Kind = ParentHandle::Kind;

TEST(ParentHandle, IsReadWholeOrNotAtAll)
{
    const std::string longest = "wayland:" + std::string(255, 'x');
    const std::tuple<std::string, Kind, unsigned int> rows[]
        = {{"x11:0x1c00007", Kind::x11, 0x1c00007}, {"x11:12", Kind::x11, 0x12},
            {"12", Kind::x11, 12}, {"0xFFffFFff", Kind::x11, 0xFFFFFFFF},
            {longest, Kind::wayland, 0}, {"wayland:0x", Kind::wayland, 0},
            {longest + "x", Kind::none, 0}, {"wayland:", Kind::none, 0}, {"", Kind::none, 0},
            {"x11:", Kind::none, 0}, {"x11:0x", Kind::none, 0}, {"0", Kind::none, 0},
            {"4294967296", Kind::none, 0}, {"x11:0x100000001", Kind::none, 0},
            {"18446744073709551617", Kind::none, 0}, {"1c", Kind::none, 0}, {"-1", Kind::none, 0},
            {"+1", Kind::none, 0}, {" 1", Kind::none, 0}, {"1 ", Kind::none, 0},
            {"0x-1", Kind::none, 0}, {"X11:1", Kind::none, 0}, {"x11:0x0x1", Kind::none, 0}};
    for (const auto& [text, kind, window] : rows) {
        const ParentHandle read = parent_handle(text.c_str());
        EXPECT_TRUE(read.kind == kind && read.window == window) << text;
        EXPECT_EQ(read.token != nullptr, kind == Kind::wayland) << text;
    }
}
