// What the shell computes from texts alone: start page, redirect, trace.
#include "webapp/StartPage.h"

#include "tests/support/TempDirectory.h"
#include "util/Arguments.h"
#include "util/StringUtil.h"
#include "webapp/PageActions.h"
#include "webapp/ShellState.h"
#include "webapp/Trace.h"

#include <gtest/gtest.h>

namespace {

/// Makes the process arguments those of a command line, for the life of this object.
class ProcessArguments {
public:
    explicit ProcessArguments(const std::string& commandLine)
        : m_list(alloc_argument_list(commandLine.c_str(), &g_ARGC))
    {
        g_ARGV = m_list.get();
    }
    ~ProcessArguments() { g_ARGC = 0; }

private:
    OwnedList m_list;
};

} // namespace

TEST(StartupArgument, IsWrittenIntoTheFirstEmptyLiteral)
{
    const char* const rows[][3]
        = {{"var STARTUP_ARG = \"\";", "a=1&b", "var STARTUP_ARG = \"a=1&b\";"},
            {"STARTUP_ARG\n'x'\"\"\"\"", "q", "STARTUP_ARG\n'x'\"q\"\"\""},
            {"STARTUP_ARG=\"x\", b=\"\"", "q", "STARTUP_ARG=\"x\", b=\"\""},
            {"startup_arg=\"\"", "q", "startup_arg=\"\""},
            {"\"\" STARTUP_ARG", "q", "\"\" STARTUP_ARG"},
            {"STARTUP_ARG \"", "q", "STARTUP_ARG \""}, {"STARTUP_ARG \"\"", "", "STARTUP_ARG \"\""},
            {"STARTUP_ARG \"\"", "\"%\\", "STARTUP_ARG \"\"%\\\""}, {"", "q", ""}};
    for (const auto& [page, query, filled] : rows) {
        EXPECT_STREQ(
            wa_insert_startup_argument(OwnedText(tovik::_strnew(page)), query).get(), filled)
            << page;
    }
}

TEST(UrlQuery, ComesFromTheFirstUrlAlone)
{
    const std::pair<const char*, const char*> rows[]
        = {{"tovik demo://x?a=1&b", "a=1&b"}, {"tovik demo://x demo://y?a=1", "unset"},
            {"tovik a?b demo://x?", ""}, {"tovik -url file:///p?x=1 demo://y?a=1", "x=1"},
            {"tovik ?a://b", "unset"}, {"tovik a?b://c?d", "d"}, {"tovik", "unset"}, {"", "unset"}};
    for (const auto& [commandLine, expected] : rows) {
        const ProcessArguments arguments(commandLine);
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
            {"redirect=a&redirect=b", "a&redirect=b"}};
    for (const auto& [query, redirect] : rows) {
        EXPECT_STREQ(wa_redirect_of_query(query).get(), redirect) << query;
    }
    EXPECT_EQ(wa_redirect_of_query("Redirect=a"), nullptr);
}

TEST(FileSearch, SkipsNamesThatDoNotFit)
{
    const TempDirectory directory;
    const std::string file = directory.write("page.html", "");
    const std::string root = directory.path();
    const ProcessArguments arguments("tovik -root " + root);
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
    g_Verbose = 0;
    wa_trace("Action:", "exit");
    const ProcessArguments arguments("tovik -verbose");
    EXPECT_EQ(wa_verbose(), 0) << "the first answer holds";
    g_Verbose = 0;
    wa_trace(nullptr, "text");
    wa_trace(static_cast<const char*>(nullptr));
    wa_trace(nullptr, 10);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "App -  text\nApp -  0x0000000A\n");
}
