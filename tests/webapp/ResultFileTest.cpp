#include "webapp/ResultFile.h"

#include "tests/support/TempDirectory.h"
#include "util/StringUtil.h"
#include "webapp/ShellState.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/resource.h>

TEST(ResultFile, HoldsAWholeAnswerOrNone)
{
    const TempDirectory directory;
    const std::string file = directory.write("answer", "an older one");
    const rlimit limit = {16384, 16384};
    std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    g_Status.reset(tovik::_strnew("OK"));
    for (const auto& [length, expected] : {std::pair(16384, 16384), {70000, 0}, {16385, 0}}) {
        const std::string answer(static_cast<std::size_t>(length), 'x');
        g_Response.reset(tovik::_strnew(answer.c_str()));
        wa_handle_result(file.c_str());
        EXPECT_EQ(contents_of(file), answer.substr(0, static_cast<std::size_t>(expected)));
    }
}
