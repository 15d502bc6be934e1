#include "util/Desktop.h"

#include "tests/support/TempDirectory.h"
#include "util/Layout.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <vector>

namespace {

class Desktop : public testing::Test {
protected:
    /// Writes a shell script that appends to the file "log".
    std::string script(const std::string& name, const std::string& commands) const
    {
        std::string path = m_directory.write(
            name, "#!/bin/sh\nexec >>'" + (m_directory / "log") + "'\n" + commands + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

    /// What the scripts wrote, after the last child of this process has ended.
    std::string log() const
    {
        while (waitpid(-1, nullptr, 0) > 0) { }
        return contents_of(m_directory / "log");
    }

    TempDirectory m_directory;
};

} // namespace

TEST_F(Desktop, UrlGoesToTheFirstOpenerThatExists)
{
    const std::string missing = m_directory / "missing";
    const std::string first
        = script("first", R"([ $(ps -o sid= -p $$) = $$ ] && echo "$0 $# $1 leads its session")");
    const std::string second = script("second", "echo second");
    const char* const openers[] = {missing.c_str(), first.c_str(), second.c_str()};
    open_url_with(openers, "http://x/?a b&c;$HOME");
    EXPECT_EQ(log(), first + " 1 http://x/?a b&c;$HOME leads its session\n");
    const char* const broken[] = {m_directory.path().c_str()};
    open_url_with(broken, "x"); // cannot be executed: the child leaves
    open_url_with({}, "x");
    EXPECT_EQ(log().find("second"), std::string::npos);
}

TEST_F(Desktop, ScriptIsFoundInTheHomeThenInTheSystem)
{
    const std::string home = m_directory.path();
    const std::string system = home + "/etc/";
    const std::string longHome(300, 'x');
    char path[kScriptCapacity];
    const auto found = [&path](const char* homeDirectory, const char* systemDirectory) {
        return find_script(homeDirectory, systemDirectory, "install", path) ? path : "nothing";
    };
    EXPECT_STREQ(found(home.c_str(), system.c_str()), ".install");
    const std::string inSystem = script("etc/install", "");
    EXPECT_EQ(found(home.c_str(), system.c_str()), inSystem);
    EXPECT_EQ(found(longHome.c_str(), system.c_str()), inSystem);
    const std::string inHome = script(".tovik/install", "");
    EXPECT_EQ(found(home.c_str(), system.c_str()), inHome);
    EXPECT_EQ(found(nullptr, system.c_str()), inSystem);
    EXPECT_STREQ(found("", nullptr), ".install");
    EXPECT_TRUE(find_script(nullptr, nullptr, longHome.substr(46).c_str(), path));
    EXPECT_FALSE(find_script(nullptr, nullptr, longHome.substr(45).c_str(), path));
    setenv("HOME", "/h", 1);
    static std::string places;
    g_FileObserver = [](const char* place, bool) { places += place + std::string(" "); };
    wa_call_script("no-script", 1);
    g_FileObserver = nullptr;
    EXPECT_EQ(places, "/h/.tovik/no-script /etc/tovik/no-script ");
}

TEST_F(Desktop, ScriptIsWaitedForWithinTheBound)
{
    run_script(script("quick", "echo done $#").c_str(), {1000, 1000, 100000});
    EXPECT_EQ(contents_of(m_directory / "log"), "done 0\n");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "collected";
    run_script((m_directory / "missing").c_str(), {1000, 1000, 100000});
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    run_script(script("slow", "exec sleep 1000").c_str(), {1000, 1000, 3});
    siginfo_t child = {};
    EXPECT_EQ(waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT), 0);
    EXPECT_EQ(child.si_pid, 0) << "still running";
    const std::string task = "/proc/self/task/" + std::to_string(getpid()) + "/children";
    kill(std::stoi(contents_of(task)), SIGKILL);
    log();
}
