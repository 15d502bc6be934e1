#include "plugin/WrapperPlugin.h"

#include "plugin/plugin.h"
#include "tests/support/TempDirectory.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <tuple>

namespace {

std::string library(const std::string& name)
{
    return PLUGINS "/" + name + "/libtovik.so";
}

class Plugins : public testing::Test {
protected:
    Plugins() { setenv("TEST_PLUGIN_LOG", (m_directory / "log").c_str(), 1); }
    ~Plugins() override { unsetenv("TEST_PLUGIN_LOG"); }

    std::string log() const { return contents_of(m_directory / "log"); }

    TempDirectory m_directory;
};

/// Writes down what the wrapper asks of itself.
class Overriding : public CWrapperPlugin {
public:
    void SetProperty(const char* name, const char* value) override { m_calls << name << value; }
    void SetRoot(const char* path) override
    {
        m_calls << " root " << path << ' ';
        CWrapperPlugin::SetRoot("/other/place");
    }
    void Release() override
    {
        m_calls << " release";
        CWrapperPlugin::Release();
    }
    std::ostringstream m_calls;
};

} // namespace

TEST_F(Plugins, BindAWholeSetTheNewerFirst)
{
    const std::string older = "older initialize text global local callback\n";
    const std::tuple<const char*, bool, bool, std::string> rows[]
        = {{"newer", true, true, "newer initialize\nset WorkingDirectory " PLUGINS "/newer/\n"},
            {"older", true, true, older},
            {"both", true, true, "newer initialize\nset WorkingDirectory " PLUGINS "/both/\n"},
            {"fallback", true, true, older}, {"five", false, false, ""}, {"none", false, false, ""},
            {"failing", true, false, "newer initialize\nnewer initialize\n"},
            {"failing-older", true, false, older + older}};
    for (const auto& [name, available, initialized, calls] : rows) {
        std::filesystem::remove(m_directory / "log");
        auto plugin = std::make_unique<CWrapperPlugin>();
        EXPECT_EQ(plugin->Available(library(name).c_str()) != nullptr, available) << name;
        // A failure leaves the library loaded and may be tried again.
        for (int attempts = !available ? 0 : initialized ? 1 : 2; attempts > 0; --attempts) {
            EXPECT_EQ(
                plugin->Initialize("text", "global", "local", [](const char*, unsigned long) {}),
                initialized);
        }
        EXPECT_EQ(plugin->IsInitialized(), available) << name;
        plugin.reset();
        EXPECT_EQ(log(), calls + (initialized ? "finalize\n" : "")) << name;
    }
}

TEST_F(Plugins, AreForwardedToAndFinalisedOnce)
{
    CWrapperPlugin plugin;
    EXPECT_EQ(plugin.Invoke("abc"), 6U);
    EXPECT_EQ(plugin.GetProperty("a"), nullptr);
    EXPECT_EQ(plugin.EnumProperty("a", "b"), nullptr);
    plugin.SetProperty("a", "b");
    void* handle = plugin.Available(library("newer").c_str());
    EXPECT_EQ(plugin.Available(library("older").c_str()), handle) << "the first library stays";
    ASSERT_TRUE(plugin.Initialize(nullptr, nullptr, nullptr, nullptr));
    plugin.SetProperty("a", "b");
    EXPECT_STREQ(plugin.GetProperty("a"), "b");
    EXPECT_EQ(plugin.GetProperty("none"), nullptr);
    EXPECT_STREQ(plugin.EnumProperty("a", nullptr), "<a|null>");
    EXPECT_EQ(plugin.Invoke("abc"), 3U);
    EXPECT_EQ(plugin.Invoke("long"), static_cast<unsigned long>(0x700000005ULL));
    plugin.Finalize();
    plugin.Finalize();
    EXPECT_EQ(plugin.Invoke("abc"), 6U);
    EXPECT_EQ(dlopen(library("newer").c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "closed";
    ASSERT_NE(plugin.Available(library("older").c_str()), nullptr) << "can be loaded again";
    EXPECT_EQ(log(),
        "newer initialize\nset WorkingDirectory " PLUGINS
        "/newer/\nset a b\ninvoke abc\ninvoke long\nfinalize\n");
}

TEST_F(Plugins, AreReachedThroughTheVirtualOperations)
{
    {
        Overriding plugin;
        ASSERT_NE(plugin.Available(library("newer").c_str()), nullptr);
        EXPECT_TRUE(plugin.Initialize(nullptr, nullptr, nullptr, nullptr));
        plugin.Finalize();
        EXPECT_EQ(plugin.Available(library("five").c_str()), nullptr);
        EXPECT_EQ(plugin.m_calls.str(),
            " root " + library("newer") + " WorkingDirectory/other/ release release");
        ASSERT_NE(plugin.Available(library("newer").c_str()), nullptr);
        EXPECT_TRUE(plugin.Initialize(nullptr, nullptr, nullptr, nullptr));
    }
    EXPECT_EQ(log(), "newer initialize\nfinalize\nnewer initialize\nfinalize\n")
        << "the destructor finalises";
}

TEST_F(Plugins, KeepTheirRootOnlyFromAPathWithASlash)
{
    for (const auto& [path, root] :
        {std::pair("/opt/app/x.so", "/opt/app/"), {"/x.so", "/"}, {"x.so", PLUGINS "/newer/"}}) {
        CWrapperPlugin plugin;
        ASSERT_NE(plugin.Available(library("newer").c_str()), nullptr);
        plugin.SetRoot(path);
        plugin.SetRoot(nullptr);
        ASSERT_TRUE(plugin.Initialize(nullptr, nullptr, nullptr, nullptr));
        EXPECT_STREQ(plugin.GetProperty("WorkingDirectory"), root);
    }
}

TEST_F(Plugins, AreReachedByTheirHandleAlone)
{
    for (const char* path : {static_cast<const char*>(nullptr), ""}) {
        ASSERT_NE(P_Available(path), nullptr) << dlerror();
        P_Finalize(P_Initialize("by the default name", nullptr, nullptr, nullptr));
    }
    void* plugin = P_Initialize("without Available", nullptr, nullptr, nullptr);
    int other = 0;
    for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&other)}) {
        P_SetProperty(handle, "a", "b");
        EXPECT_EQ(P_GetProperty(handle, "a"), nullptr);
        EXPECT_EQ(P_EnumProperty(handle, "a", "b"), nullptr);
        EXPECT_EQ(P_Invoke(handle, "a"), 6U);
        P_Finalize(handle);
    }
    EXPECT_EQ(P_GetProperty(plugin, "a"), nullptr) << "nothing was set";
    P_Finalize(plugin);
    const std::string named = "older initialize by the default name null null null\nfinalize\n";
    EXPECT_EQ(
        log(), named + named + "older initialize without Available null null null\nfinalize\n");
}

// The library exports the older names itself: found through a plug-in that is linked to it, they
// would make it call itself without end.
TEST_F(Plugins, OwnFunctionsOfTheLibraryCountAsMissing)
{
    void* tovikgui = dlopen(TOVIK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(tovikgui, nullptr) << dlerror();
    auto* available = reinterpret_cast<decltype(&P_Available)>(dlsym(tovikgui, "P_Available"));
    EXPECT_EQ(available(library("linked").c_str()), nullptr);
    EXPECT_NE(available(library("older").c_str()), nullptr);
}
