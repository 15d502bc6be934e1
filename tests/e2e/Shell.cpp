#include "tests/e2e/Shell.h"

#include <chrono>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr int kPatience = 60; // seconds

/// Calls `done` every few milliseconds until it says so; false when it does not in time.
bool eventually(const std::function<bool()>& done)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(kPatience);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

} // namespace

std::string file_url(const std::string& path)
{
    return "file://" + path;
}

void Shell::start_display(const std::string& size, bool windowManager)
{
    const std::string numberFile = m_directory / "display";
    m_server = Process({"bash", "-c",
                           "exec Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 " + size
                               + "x24 3>'" + numberFile + "'"},
        {});
    ASSERT_TRUE(eventually([&] { return contents_of(numberFile).ends_with('\n'); }));
    std::string number = contents_of(numberFile);
    number.pop_back();
    m_environment["DISPLAY"] = ":" + number;
    if (windowManager) {
        m_windowManager = Process({"openbox"}, m_environment);
        expect_on_display("xprop -root _NET_SUPPORTING_WM_CHECK | grep -c 'window id'", "1\n");
    }
}

std::string Shell::page(const std::string& script, const std::string& name) const
{
    return m_directory.write(name,
        "<!doctype html><meta charset='utf-8'><body><script>\n"
        "const exit = (status, response) => { location.href = 'tvk://exit?status='\n"
        "    + encodeURIComponent(status) + '&response=' + encodeURIComponent(response); };\n"
            + script + "\n</script>");
}

std::string Shell::remote_page() const
{
    return page("let done = 0; setInterval(() => { const request = new XMLHttpRequest();\n"
                "request.onload = () => { const [number, url] = request.response.split(' ');\n"
                "  if (Number(number) > done) { done = Number(number); location.href = url; } };\n"
                "request.open('GET', 'command?' + Math.random()); request.send(); }, 20);",
        "remote.html");
}

void Shell::navigate(const std::string& url)
{
    m_directory.write("command.new", std::to_string(++m_commands) + " " + url + " ");
    fs::rename(m_directory / "command.new", m_directory / "command");
}

void Shell::install(const std::string& library)
{
    fs::create_directories(m_directory / "opt/bin");
    fs::create_directories(m_directory / "opt/lib");
    fs::copy_file(TOVIK_HOST, m_directory / "opt/bin/tovik");
    fs::copy_file(TOVIK_LIBRARY, m_directory / ("opt/lib/" + library));
    m_host = m_directory / "opt/bin/tovik";
}

void Shell::start(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), m_host);
    if (std::find(arguments.begin(), arguments.end(), "-store") == arguments.end()) {
        arguments.insert(arguments.end(), {"-store", store()});
    }
    m_environment.insert({"DBUS_SESSION_BUS_ADDRESS", "disabled:"});
    m_environment.insert({"G_DEBUG", "fatal-criticals"});
    m_environment.insert({"HOME", m_directory.path()});
    if (*SANITIZER_LIBRARY != 0) {
        const std::string log = "log_path=" + (m_directory / "sanitizer");
        m_environment.insert({"LD_PRELOAD", SANITIZER_LIBRARY});
        m_environment.insert({"ASAN_OPTIONS", "detect_leaks=1:" + log});
        m_environment.insert({"UBSAN_OPTIONS", "print_stacktrace=1:" + log});
        // Without the first, the leak check itself crashes in the user-interface process.
        m_environment.insert({"LSAN_OPTIONS", "use_tls=0:exitcode=0"});
    }
    m_window.clear();
    fs::remove(store());
    m_process = Process(arguments, m_environment, m_directory / "trace", m_directory / "errors",
        m_program, m_directory.path());
}

std::string Shell::result()
{
    const std::optional<int> status = m_process.wait(kPatience);
    EXPECT_TRUE(status.has_value()) << "the host still runs";
    EXPECT_EQ(status.value_or(0), 0) << errors();
    return contents_of(store());
}

std::string Shell::run(std::vector<std::string> arguments)
{
    start(std::move(arguments));
    return result();
}

void Shell::wait_for_window()
{
    ASSERT_TRUE(eventually([this] {
        m_window = output_of("DISPLAY=" + m_environment["DISPLAY"]
            + " xdotool search --onlyvisible --pid " + std::to_string(m_process.pid())
            + " 2>/dev/null");
        return !m_window.empty();
    })) << errors();
}

std::string Shell::on_display(const std::string& command)
{
    return output_of("export DISPLAY=" + m_environment["DISPLAY"] + "\nWINDOW=" + m_window + "\n"
        + "{ " + command + "\n} 2>/dev/null");
}

void Shell::expect_on_display(const std::string& command, const std::string& expected)
{
    std::string seen;
    EXPECT_TRUE(eventually([&] {
        seen = on_display(command);
        return seen == expected;
    })) << command
        << " prints " << seen << "instead of " << expected;
}

void Shell::TearDown()
{
    m_process = Process();
    check_sanitizer_logs();
}

void Shell::check_sanitizer_logs() const
{
    for (const auto& entry : fs::directory_iterator(m_directory.path())) {
        if (!entry.path().filename().string().starts_with("sanitizer.")) {
            continue;
        }
        std::istringstream log(contents_of(entry.path()));
        std::string report;
        // Reports are separated by empty lines. A leak is ours when the first frame behind the
        // allocator is our source; the libraries below us leave hundreds of their own.
        for (std::string line; std::getline(log, line);) {
            report = line.empty() ? "" : report + line + "\n";
            const bool ours = line.find(SOURCE_DIRECTORY) != std::string::npos;
            if (line.find("    #1 ") == 0 && ours
                && report.find(" leak of ") != std::string::npos) {
                ADD_FAILURE() << report;
            }
            if (line.find("runtime error:") != std::string::npos
                || line.find("ERROR: AddressSanitizer") != std::string::npos) {
                ADD_FAILURE() << contents_of(entry.path());
                break;
            }
        }
    }
}
