// Finding the plug-in, and what the shell takes from it.
#include "bridge/InfoTexts.h"
#include "bridge/WebBridge.h"
#include "plugin/plugin.h"
#include "tests/support/TempDirectory.h"
#include "util/Utility.h"
#include "webapp/ShellState.h"

#include <gtest/gtest.h>
#include <tuple>

namespace {

class PluginUser : public testing::Test {
protected:
    ~PluginUser() override
    {
        wa_FreePlugin();
        g_ARGC = 0;
        g_Verbose = 0;
    }

    /// Makes the process arguments those of a command line, with tracing on.
    void set_arguments(const std::string& commandLine)
    {
        m_list.reset(alloc_argument_list(commandLine.c_str(), &g_ARGC));
        g_ARGV = m_list.get();
        g_Verbose = 1;
    }

    /// What wa_GetPlugin() traces.
    static std::string traced()
    {
        testing::internal::CaptureStdout();
        wa_GetPlugin();
        return testing::internal::GetCapturedStdout();
    }

    OwnedList m_list;
    TempDirectory m_directory;
};

std::string brand()
{
    char name[8];
    return osGetBrandName(name, sizeof name) ? name : "";
}

} // namespace

TEST_F(PluginUser, FindsThePluginByTheOptions)
{
    const std::string newer = PLUGINS "/newer/libtovik.so";
    const std::string root = m_directory.path();
    const std::string library = root + "/lib" + brand() + ".so";
    const std::string config = m_directory.write(brand() + ".conf", "");
    const std::string path = m_directory.path().string() + "/";
    const std::string fits = path + std::string(259 - path.size(), 'x');
    const auto lines
        = [](const std::string& found, const std::string& global, const std::string& local) {
              return "App - Library: " + found + "\nApp - Config global: " + global
                  + "\nApp - Config local: " + local + "\n";
          };
    const std::string yes = "App - Plugin available: YES\n";
    const std::tuple<std::string, std::string> rows[]
        = {{"-plugin " + newer + " -root " + root, lines(newer, "", "") + yes},
            {"-root " + root, lines("", config, "") + yes}, // by the loader's search
            {"-plugin -root " + root + "/ -config " + fits, lines("", config, fits) + yes},
            {"-config " + fits + "x", lines("", "", "") + yes},
            {"-plugin " + fits + "x -root " + root, lines("", "", "") + yes}};
    for (const auto& [options, expected] : rows) {
        set_arguments("tovik " + options);
        EXPECT_EQ(traced(), expected) << options;
        wa_FreePlugin();
    }
    std::filesystem::copy_file(newer, library);
    for (const std::string& given : {root, root + "/"}) {
        set_arguments("tovik -root " + given);
        EXPECT_EQ(traced(), lines(library, config, "") + yes);
        EXPECT_EQ(traced(), "") << "found once";
        wa_FreePlugin();
        wa_FreePlugin();
    }
    // A root of 244 bytes is the longest one that is looked at.
    const std::string slashes = root + std::string(244 - root.size(), '/');
    set_arguments("tovik -root " + slashes);
    EXPECT_NE(traced().find(slashes + "lib" + brand() + ".so\n"), std::string::npos);
    wa_FreePlugin();
    set_arguments("tovik -root " + slashes + "/");
    EXPECT_EQ(traced(), lines("", "", "") + yes);
    wa_FreePlugin();
    set_arguments("tovik -plugin " PLUGINS "/failing/libtovik.so");
    const std::string failed = lines(PLUGINS "/failing/libtovik.so", "", "");
    EXPECT_EQ(traced(), failed + "App - Plugin available: NO\n");
    EXPECT_EQ(traced(), failed + "App - Plugin available: NO\n") << "and tries again";
}

TEST_F(PluginUser, SaysWhyThereIsNone)
{
    set_arguments("tovik -plugin /none/libtovik.so");
    char buffer[64] = "unset";
    EXPECT_FALSE(wa_user_agent_info(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(wa_load_url_resource("res://page"), nullptr);
    EXPECT_NE(
        traced().find("App - Plugin missing: /none/libtovik.so: cannot open"), std::string::npos);
    EXPECT_NE(traced().find("Plugin missing"), std::string::npos) << "each call tries again";
    set_arguments("tovik -plugin " PLUGINS "/five/libtovik.so");
    EXPECT_NE(traced().find("App - Plugin missing: \n"), std::string::npos);
}

TEST(InfoTexts, AreCutToTwoNumbers)
{
    using Row = std::pair<const char*, const char*>;
    const auto check = [](auto* format, std::initializer_list<Row> rows) {
        for (const auto& [text, info] : rows) {
            char buffer[64] = "";
            EXPECT_EQ(format(text, buffer, sizeof buffer), *info != 0) << text;
            EXPECT_STREQ(buffer, info) << text;
        }
    };
    check(wa_format_client_info,
        {{"Product;abc;0612,xyz", "Product/6.12"}, {"Product;abc;1003,xyz", "Product/10.3"},
            {"Product;abc;1000,xyz", "Product/10.0"}, {"Product;abc;0600,xyz", "Product/6.0"},
            {"Product;abc;5,xyz", "Product/5."}, {"Product%3Babc%3b0612%2cxyz", "Product/6.12"},
            {"A+B;;x1x2,", "A B/1.2"}, {";;,", "/."}, {"Product;abc;0612", ""},
            {"Product;0612,x", ""}, {"", ""}, {nullptr, ""}});
    check(wa_format_system_info,
        {{"Ubuntu 22.04.3 LTS;x86_64", "Ubuntu/22.04"}, {"Linux Mint 21.2;x", "Linux Mint/21.2"},
            {"macOS 10.15.7;x86_64", "macOS/10.15"}, {"Linux 6.1;x", "Linux/6."},
            {"Linux 6.;x", "Linux/6."}, {"Debian 12;x86_64", ""}, {"Ubuntu 22.04", ""},
            {"Ubuntu22.04;x", ""}, {nullptr, ""}});
    // Name, version and four bytes more have to be less than the size.
    char buffer[16] = "";
    EXPECT_FALSE(wa_format_client_info("Product;abc;0612,", buffer, 15));
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(wa_format_client_info("Product;abc;0612,", buffer, 16));
}

TEST_F(PluginUser, TakesAUserAgentIdThatFitsHalfTheBuffer)
{
    set_arguments("tovik -plugin " PLUGINS "/newer/libtovik.so");
    g_Verbose = 2;
    setenv("TEST_ProductInfo", "Product;abc;0612,xyz", 1);
    setenv("TEST_Web_page", "PHA+aGk8L3A+", 1);
    char buffer[64] = "unset";
    for (const auto& [length, fits] : {std::pair(31, true), std::pair(32, false)}) {
        setenv("TEST_UserAgentId", std::string(length, 'x').c_str(), 1);
        EXPECT_EQ(wa_user_agent_info(buffer, sizeof buffer), fits) << "no way to ProductInfo";
        EXPECT_EQ(std::string(buffer).size(), fits ? length : 0);
    }
    unsetenv("TEST_UserAgentId");
    EXPECT_FALSE(wa_user_agent_info(buffer, 0));
    EXPECT_TRUE(wa_user_agent_info(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "Product/6.12") << "without MachineInfo";
    EXPECT_STREQ(OwnedText(wa_load_url_resource("res://page")).get(), "<p>hi</p>");
    EXPECT_STREQ(P_GetProperty(wa_GetPlugin(), "Web:page"), "PHA+aGk8L3A+") << "untouched";
    EXPECT_EQ(wa_load_url_resource("res://page?x"), nullptr);
    int count = 7;
    EXPECT_EQ(wa_load_argument_list(&count), nullptr);
    EXPECT_EQ(count, 7);
}
