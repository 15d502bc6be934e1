// Finding the plug-in, and what the shell reads from it.
#include "bridge/InfoTexts.h"
#include "bridge/WebBridge.h"
#include "plugin/plugin.h"
#include "process/ProcessState.h"
#include "tests/support/TempDirectory.h"
#include "util/Utility.h"

#include <gtest/gtest.h>

namespace {

/// Makes the process arguments those of a command line.
void set_arguments(const std::string& options)
{
    static OwnedList list;
    list.reset(alloc_argument_list(("tovik " + options).c_str(), &g_ARGC));
    g_ARGV = list.get();
}

} // namespace

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
            {"Product;abc;5,xyz", "Product/5."}, {"Product%3Babc%3b9:99%2cxyz", "Product/9.99"},
            {"A+B;;x1x2,", "A B/1.2"}, {";;,", "/."}, {"Product;abc;0612", ""},
            {"Product;0612,x", ""}, {"", ""}, {nullptr, ""}});
    check(wa_format_system_info,
        {{"Ubuntu 22.04.3 LTS;x86_64", "Ubuntu/22.04"}, {"Linux Mint 21.9;x", "Linux Mint/21.9"},
            {"macOS 10.15.7;x86_64", "macOS/10.15"}, {"Linux 6.1;x", "Linux/6."},
            {"Linux 6.;x", "Linux/6."}, {"Debian 12;x86_64", ""}, {"Ubuntu 22.04", ""},
            {"Ubuntu22.04;x", ""}, {nullptr, ""}});
    // Name, version and four bytes more have to be less than the size.
    char buffer[16] = "";
    EXPECT_FALSE(wa_format_client_info("Product;abc;0612,", buffer, 15));
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(wa_format_client_info("Product;abc;0612,", buffer, 16));
}

TEST(Plugin, GivesAUserAgentIdThatFitsHalfTheBuffer)
{
    char buffer[64] = "unset";
    set_arguments("-plugin /none/libtovik.so");
    EXPECT_FALSE(wa_user_agent_info(buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(wa_load_url_resource("res://page"), nullptr);
    set_arguments("-plugin " PLUGINS "/newer/libtovik.so");
    setenv("TEST_ProductInfo", "Product;abc;0612,xyz", 1);
    setenv("TEST_Web_page", "PHA+aGk8L3A+", 1);
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
    wa_FreePlugin();
}

TEST(Plugin, IsFoundByTheOptionsAndOnce)
{
    const TempDirectory directory;
    char brand[8];
    ASSERT_TRUE(osGetBrandName(brand, sizeof brand));
    const std::string name = std::string("lib") + brand + ".so";
    const std::string newer = PLUGINS "/newer/libtovik.so";
    const std::string failing = PLUGINS "/failing/libtovik.so";
    const std::string root = directory.path(), full = root + "/full";
    const std::string config = directory.write(std::string(brand) + ".conf", "");
    directory.write("full/" + name, contents_of(newer));
    const std::string fits = root + "/" + std::string(258 - root.size(), 'x');
    // A root of 244 bytes is the longest one that is looked at.
    const std::string slashes = full + std::string(244 - full.size(), '/');
    const std::string yes = "App - Plugin available: YES\n", no = "App - Plugin available: NO\n";
    const std::string missing = "App - Plugin missing: ";
    const std::string none = "/none/libtovik.so", five = PLUGINS "/five/libtovik.so";
    const struct {
        std::string options, library, globalConfig, localConfig, result;
    } rows[] = {{"-plugin " + newer + " -root " + root, newer, "", "", yes},
        {"-root " + root, "", config, "", yes}, // by the loader's search
        {"-plugin -root " + root + "/ -config " + fits, "", config, fits, yes},
        {"-config " + fits + "x", "", "", "", yes},
        {"-plugin " + fits + "x -root " + root, "", "", "", yes},
        {"-root " + full, full + "/" + name, "", "", yes},
        {"-root " + full + "/", full + "/" + name, "", "", yes},
        {"-root " + slashes, slashes + name, "", "", yes},
        {"-root " + slashes + "/", "", "", "", yes},
        {"-plugin " + five, five, "", "", missing + five + ": undefined symbol: P_Invoke\n"},
        {"-plugin " + none, none, "", "",
            missing + none + ": cannot open shared object file: No such file or directory\n"},
        {"-plugin " + failing, failing, "", "", no}}; // stays loaded
    for (const auto& [options, library, globalConfig, localConfig, result] : rows) {
        set_arguments(options);
        g_Verbose = 1;
        testing::internal::CaptureStdout();
        const bool found = wa_GetPlugin() != nullptr;
        wa_GetPlugin(); // tries again only where there was none
        const std::string expected = "App - Library: " + library + "\nApp - Config global: "
            + globalConfig + "\nApp - Config local: " + localConfig + "\n" + result;
        EXPECT_EQ(
            testing::internal::GetCapturedStdout(), expected + (result == yes ? "" : expected));
        EXPECT_EQ(found, result == yes) << options;
        wa_FreePlugin();
    }
}
