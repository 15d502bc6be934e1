// What the shell computes from texts alone: start page, redirect, trace.
#include "webapp/StartPage.h"

#include "process/ProcessState.h"
#include "process/Trace.h"
#include "tests/support/TempDirectory.h"
#include "util/Utility.h"
#include "webapp/PageActions.h"

#include <gtest/gtest.h>

namespace {

/// Makes the process arguments those of a command line.
void set_arguments(const std::string& commandLine)
{
    static OwnedList list;
    list.reset(alloc_argument_list(commandLine.c_str(), &g_ARGC));
    g_ARGV = list.get();
}

} // namespace

TEST(UrlQuery, ComesFromTheFirstUrlAlone)
{
    const std::pair<const char*, const char*> rows[]
        = {{"tovik demo://x?a=1&b", "a=1&b"}, {"tovik demo://x demo://y?a=1", "unset"},
            {"tovik a?b demo://x?", ""}, {"tovik -url file:///p?x=1 demo://y?a=1", "x=1"},
            {"tovik ?a://b", "unset"}, {"tovik a?b://c?d", "d"}, {"tovik", "unset"}, {"", "unset"}};
    for (const auto& [commandLine, expected] : rows) {
        set_arguments(commandLine);
        const char* query = "unset";
        EXPECT_EQ(wa_get_url_arguments(&query), std::string(expected) != "unset") << commandLine;
        EXPECT_STREQ(query, expected) << commandLine;
    }
}

TEST(Redirect, IsCutAtTheTokenAndDecoded)
{
    const std::pair<const char*, const char*> rows[]
        = {{"redirect=http%3A%2F%2Fx%2F%3Fa", "http://x/?a"},
            {"a=1&redirect=x&b=2&autostarttoken=t&c", "x&b=2"},
            {"autostarttoken=1&redirect=a+b", "a b"}, {"redirect=", ""},
            {"redirect=a&redirect=b", "a&redirect=b"}, {"Redirect=a", nullptr}};
    for (const auto& [query, redirect] : rows) {
        EXPECT_STREQ(wa_redirect_of_query(query).get(), redirect) << query;
    }
}

TEST(FileSearch, SkipsNamesThatDoNotFit)
{
    const TempDirectory directory;
    const std::string file = directory.write("page.html", "");
    const std::string root = directory.path();
    set_arguments("tovik -root " + root);
    // No separator is put between the root and the name, and slashes may be repeated.
    const std::string longest = std::string(259 - root.size() - 9, '/') + "page.html";
    const std::pair<std::string, bool> rows[] = {{"/page.html", true}, {"page.html", false},
        {longest, true}, {"/" + longest, false}, {std::string(259, 'x'), false},
        {std::string(260, 'x'), false}, {std::string(100000, 'x'), false}, {"", true}};
    for (const auto& [name, found] : rows) {
        EXPECT_EQ(OwnedText(wa_gui_file_path(name.c_str())) != nullptr, found) << name;
    }
}

TEST(Trace, IsDecidedOnceAndTakesNulls)
{
    testing::internal::CaptureStdout();
    set_arguments("tovik");
    g_Verbose = 0;
    wa_trace("Action:", "exit");
    set_arguments("tovik -verbose");
    EXPECT_EQ(wa_verbose(), 0) << "the first answer holds";
    g_Verbose = 0;
    wa_trace(nullptr, "text");
    wa_trace(static_cast<const char*>(nullptr));
    wa_trace(nullptr, 10);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "App -  text\nApp -  0x0000000A\n");
}
