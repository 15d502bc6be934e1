// What the X server shows of the window.
#include "tests/e2e/Shell.h"

namespace {

constexpr char kFrame[] = "xwininfo -id $WINDOW | awk '/Width|Height/ {print $2}"
                          " /Absolute/ {print $4}' | xargs";

struct Placement {
    const char* name;
    std::vector<std::string> options;
    const char* frame; // x y width height on a bare X server of 1280 x 1024

    friend void PrintTo(const Placement& placement, std::ostream* stream)
    {
        *stream << placement.name;
    }
};

class WindowFrame : public Shell, public testing::WithParamInterface<Placement> { };

const Placement kPlacements[] = {
    {"Default", {}, "480 256 320 512\n"},
    {"Pixels", {"-size", "0x01F40190", "-position", "0x000A0014"}, "10 20 500 370\n"},
    {"Percent", {"-size", "0x00320032", "-position", "0x00010001"}, "1 1 640 512\n"},
    {"Capped", {"-size", "0x7000012C"}, "0 377 1280 270\n"},
    {"FarEdges", {"-position", "0x80148014"}, "940 492 320 512\n"},
    {"FullScreen", {"-fullscreen", "-size", "0x00320032"}, "0 0 1280 994\n"},
    {"Resizing", {"-size", "0x00320032", "-resizing"}, "320 256 640 512\n"},
    {"SizeWithoutValue", {"-position", "0x000A000A", "-size"}, "10 0 64 1024\n"},
    {"MovedInside", {"-position", "0x04B003E8"}, "960 512 320 512\n"},
};

} // namespace

TEST_P(WindowFrame, FollowsTheOptions)
{
    start_display();
    std::vector<std::string> arguments = {"-url", file_url(page(""))};
    arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
    start(arguments);
    wait_for_window();
    expect_on_display(kFrame, GetParam().frame);
}

INSTANTIATE_TEST_SUITE_P(Options, WindowFrame, testing::ValuesIn(kPlacements),
    [](const auto& placement) { return placement.param.name; });

TEST_F(Shell, ResizeIsBoundedAndMovesTheWindowBackInside)
{
    for (const char* resizing : {"-resizing", "-verbose"}) {
        start_display();
        start({"-url", file_url(remote_page()), "-size", "0x03200276", "-position", "0x01900064",
            resizing});
        wait_for_window();
        expect_on_display(kFrame, "400 100 800 600\n");
        const struct {
            const char* status;
            const char* frame;
        } rows[] = {
            {"50", "400 100 400 300\n"},
            {"50", "400 100 400 300\n"},
            {"0", "400 100 800 600\n"},
            {"5", "400 100 64 64\n"},
            {"0x02800000", "400 100 640 600\n"},
            {"0640", "400 100 800 640\n"},
            {"150", "80 100 1200 900\n"},
            {"999", "0 0 1280 1024\n"},
        };
        for (const auto& row : rows) {
            navigate(std::string("tvk://resize?status=") + row.status);
            expect_on_display(kFrame, row.frame);
        }
        navigate("tvk://resize");
        expect_on_display(kFrame, "0 0 800 600\n");
        navigate("tvk://exit?status=OK");
        EXPECT_EQ(result(), "OK");
    }
    EXPECT_NE(trace().find("App - Action: resize\nApp -    Size    150\nApp -    Percent YES\n"
                           "App - Dialog old position 0x01900064\n"
                           "App - Dialog new position 0x00500064\n"),
        std::string::npos)
        << trace();
}

TEST_F(Shell, TitleStatesAndHintsFollowTheOptions)
{
    start_display("1280x1024", true);
    start({"-url", file_url(page("")), "-title", "Zugang \xc3\xbc", "-system"});
    wait_for_window();
    expect_on_display("xdotool getwindowname $WINDOW", "Zugang \xc3\xbc\n");
    expect_on_display("xprop -id $WINDOW _NET_WM_STATE | grep -c ABOVE", "1\n");
    expect_on_display("xprop -id $WINDOW WM_NORMAL_HINTS | grep -c '320 by 512'", "2\n");
    start({"-url", file_url(page("")), "-resizing"});
    wait_for_window();
    expect_on_display("xdotool getwindowname $WINDOW", "Tovik\n");
    expect_on_display("xprop -id $WINDOW _NET_WM_STATE | grep -c ABOVE", "0\n");
    expect_on_display("xprop -id $WINDOW WM_NORMAL_HINTS | grep -c 'maximum size'", "0\n");
}

TEST_F(Shell, IconComesFromTheOptionOrTheInstallation)
{
    start_display();
    install();
    const std::string address = file_url(page(""));
    constexpr char kIcon[] = "xprop -id $WINDOW _NET_WM_ICON | grep -c 'Icon ('";
    start({"-url", address});
    wait_for_window();
    expect_on_display(kIcon, "0\n");
    std::filesystem::copy_file(TEST_ICON, m_directory / "opt/lib/logo.ico");
    for (const auto& [option, count] :
        {std::pair("-resizing", "1\n"), std::pair(TEST_ICON, "1\n"), std::pair("none", "0\n")}) {
        start({"-url", address, "-icon", option});
        wait_for_window();
        // "-icon" without a value names no readable file, and so no icon.
        expect_on_display(kIcon, std::string(option) == "-resizing" ? "0\n" : count);
    }
    start({"-url", address});
    wait_for_window();
    expect_on_display(kIcon, "1\n");
}
