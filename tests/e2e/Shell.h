// Shell.h: runs the real host on an X server of its own, as a product does, and looks at what the
// page answers and the X server shows.
#pragma once

#include "tests/e2e/Process.h"
#include "tests/support/TempDirectory.h"

#include <functional>
#include <gtest/gtest.h>

class Shell : public testing::Test {
protected:
    /// Starts the X server with a screen of this size, and a window manager if asked for.
    void start_display(const std::string& size = "1280x1024", bool windowManager = false);

    /// Writes a page whose script is `script`; it may call exit(status, response), and
    /// every(ms, function).
    std::string page(const std::string& script, const std::string& name = "page.html") const;

    /// Starts the host with "-store" and these arguments. The text of a `page` is its path.
    void start(std::vector<std::string> arguments);

    /// Waits for the host to end with status 0 and returns the text of the result file.
    std::string result();

    /// Both in one.
    std::string run(std::vector<std::string> arguments);

    /// Standard output of the host that ended.
    std::string trace() const { return contents_of(m_directory / "trace"); }
    std::string errors() const { return contents_of(m_directory / "errors"); }

    /// Runs a shell command on the display, "$WINDOW" being the host's window.
    std::string on_display(const std::string& command);

    /// Repeats on_display() until it prints `expected`, and checks that it did.
    void expect_on_display(const std::string& command, const std::string& expected);

    /// Waits for the host's window to be visible.
    void wait_for_window();

    /// Has the page of remote_page() navigate to this URL.
    void navigate(const std::string& url);
    std::string remote_page() const;

    /// Copies host and library into an installation of the test's own, bin/ and lib/, the library
    /// under another name if asked for, and makes later starts use it.
    void install(const std::string& library = "libtovikgui.so");

    std::string store() const { return m_directory / "result"; }

    TempDirectory m_directory;
    std::string m_host = TOVIK_HOST;
    std::string m_program; // executed in place of the first argument when set
    Process::Environment m_environment;
    Process m_process;

    void TearDown() override;

private:
    /// Fails the test for every report of a sanitizer that concerns our own code.
    void check_sanitizer_logs() const;

    Process m_server;
    Process m_windowManager;
    std::string m_window;
    int m_commands = 0;
};

/// "file://" and the path.
std::string file_url(const std::string& path);
