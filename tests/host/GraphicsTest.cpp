#include "host/Graphics.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <tuple>

TEST(AvoidBlankWindow, SpeaksOnlyWithTheModuleAndToAnEnvironmentThatIsSilent)
{
    constexpr char kVariable[] = "WEBKIT_DISABLE_DMABUF_RENDERER";
    const std::tuple<const char*, const char*, const char*> rows[] = {{"/dev/null", nullptr, "1"},
        {"/dev/null", "0", "0"}, {"/dev/null", "", ""}, {"/dev/none", nullptr, nullptr}};
    for (const auto& [file, before, after] : rows) {
        before == nullptr ? unsetenv(kVariable) : setenv(kVariable, before, 1);
        avoid_blank_window(file);
        EXPECT_STREQ(std::getenv(kVariable), after) << file;
    }
}
