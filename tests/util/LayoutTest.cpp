#include "util/Layout.h"

#include "tests/support/TempDirectory.h"

#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>
#include <tuple>

namespace fs = std::filesystem;

namespace {

/// Installs the probe under a name and place of the test's choice and asks it.
class Layout : public testing::Test {
protected:
    std::string install(const std::string& name) const
    {
        const fs::path program = m_root / name;
        fs::create_directories(program.parent_path());
        fs::copy_file(LAYOUT_PROBE, program, fs::copy_options::overwrite_existing);
        return program;
    }

    /// Runs a shell command in the test's directory and returns what it prints.
    std::string output(const std::string& command) const
    {
        const std::string line = "cd '" + m_root.path().string() + "' && " + command;
        const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(line.c_str(), "r"), pclose);
        char text[1024] = "";
        text[fread(text, 1, sizeof text - 1, pipe.get())] = 0;
        return text;
    }

    TempDirectory m_root;
};

} // namespace

TEST_F(Layout, DerivesTheBrandFromTheFileName)
{
    const char* const rows[][2] = {{"libtovik.so", "tovik"}, {"libtovikgui.so", "tovik"},
        {"tovikapp", "tovik"}, {"tovik_gui", "tovik"}, {"libab_gui.so", "ab"},
        {"libabapp.so", "ab"}, {"libabsetup.so", "ab"}, {"libwa.so", "wa.so"},
        {"libabc.so", "abc.s"}, {"libx.so", "tovik"}, {"appmain.so", "tovik"}, {"ab", "ab"},
        {"liblib", "lib"}, {"abxy", "ab"}};
    for (const auto& [name, brand] : rows) {
        EXPECT_EQ(output(install(name) + " brand 6"), std::string("1|") + brand) << name;
    }
    EXPECT_EQ(output(install("ab") + " brand 5"), "0|");
    EXPECT_EQ(output(install("ab") + " brand 0"), "0|");
}

TEST_F(Layout, KnowsItsOwnPlace)
{
    const std::string program = install("opt/bin/tovik");
    EXPECT_EQ(output(program + " root"), "1|" + fs::path(program).parent_path().string() + "/");
    EXPECT_EQ(output("cd opt && bin/../bin/tovik application"), "1|" + program);
    EXPECT_EQ(output("ln -s opt/bin/tovik link && ./link application"), "1|" + program);
    EXPECT_EQ(output("bash -c 'exec -a cat opt/bin/tovik application'"),
        "1|" + fs::canonical("/usr/bin/cat").string());
    EXPECT_EQ(output("bash -c 'exec -a nowhere opt/bin/tovik application'"), "1|nowhere");
    const std::string longName(300, 'x'); // would not fit after "/usr/bin/"
    EXPECT_EQ(output("bash -c 'exec -a " + longName + " opt/bin/tovik application 400'"),
        "1|" + longName);
    EXPECT_EQ(output("bash -c 'exec -a \"\" opt/bin/tovik application'"), "0|");
    EXPECT_EQ(output("bash -c 'exec -a \"a b\" opt/bin/tovik application'"), "1|a");
    const std::size_t length = program.size();
    for (const char* question : {" module ", " application "}) {
        EXPECT_EQ(output(program + question + std::to_string(length)), "0|");
        EXPECT_EQ(output(program + question + std::to_string(length + 1)), "1|" + program);
        EXPECT_EQ(output(program + question + "0"), "0|");
    }
}

TEST_F(Layout, FindsTheLibraryBesideTheProgramThenInLib)
{
    const std::string program = install("opt/bin/ab_tool");
    EXPECT_EQ(output(program + " library"), "0|/usr/lib/libab.so");
    EXPECT_EQ(output(install("ab_tool") + " library"), "0|/usr/lib/libab.so") << "without /bin/";
    EXPECT_EQ(output(program + " library 20"), "0|");
    EXPECT_EQ(output(program + " library 0"), "0|");
    m_root.write("opt/lib/libab.so", "");
    EXPECT_EQ(output(program + " library"), "1|" + (m_root / "opt/lib/libab.so"));
    m_root.write("opt/bin/libab.so", "");
    EXPECT_EQ(output(program + " library"), "1|" + (m_root / "opt/bin/libab.so"));
    const std::size_t directory = program.size() - std::string("ab_tool").size();
    EXPECT_EQ(
        output(program + " library " + std::to_string(directory + 14)), "0|/usr/lib/libab.so");
}

TEST_F(Layout, TranslatesToCanonicalPaths)
{
    const std::string directory = m_root.path();
    const std::tuple<std::string, std::size_t, bool> rows[] = {{directory, 260, false},
        {directory + "/", 260, true}, {directory + "/", directory.size() + 1, true},
        {directory + "/", directory.size(), false}, {directory + "/none", 260, false},
        {directory + "/", 0, false}};
    for (const auto& [given, capacity, translated] : rows) {
        char path[300];
        path[given.copy(path, sizeof path - 1)] = 0;
        EXPECT_EQ(osTranslatePath(path, capacity), translated) << given;
        EXPECT_EQ(path, translated ? directory : given);
    }
}

TEST_F(Layout, ReadsWholeFiles)
{
    for (const std::size_t size : {0UL, 1UL, 65535UL, 65536UL, 65537UL, 200000UL}) {
        const std::string content = std::string(size / 2, 'x') + std::string(size - size / 2, 0);
        unsigned char* data = nullptr;
        EXPECT_EQ(osReadData(&data, m_root.write("file", content).c_str()), size);
        const std::unique_ptr<unsigned char[]> owner(data);
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(std::string(data, data + size), content);
    }
    unsigned char* data = nullptr;
    EXPECT_EQ(osReadData(&data, (m_root / "none").c_str()), 0U);
    EXPECT_EQ(data, nullptr);
    EXPECT_FALSE(osFileExist(nullptr));
}
