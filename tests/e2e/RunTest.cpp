// The host, the start page and the actions that reach beyond the window.
#include "tests/e2e/Shell.h"

namespace {

class ServedShell : public Shell {
protected:
    /// Starts the server with this page and returns its address.
    std::string serve(const std::string& pageFile, const std::string& certificate = "")
    {
        std::vector<std::string> command = {"python3", TEST_SERVER, pageFile};
        if (!certificate.empty()) {
            command.push_back(certificate);
        }
        const std::string portFile = m_directory / "port";
        m_server = Process(command, {}, portFile);
        expect_on_display("tail -c 1 '" + portFile + "' | wc -l", "1\n");
        const std::string port = contents_of(portFile);
        return (certificate.empty() ? "http://127.0.0.1:" : "https://127.0.0.1:")
            + port.substr(0, port.size() - 1);
    }

    Process m_server;
};

} // namespace

TEST_F(ServedShell, HandlesRedirectsCredentialsAndUserAgents)
{
    start_display();
    const std::string address = serve(page(
        "fetch('/count').then(r => r.text()).then(text => exit('OK', text + location.search))"));
    EXPECT_EQ(run({"-url", address + "/page", "-useragent", "Own/1.0"}), "1 Own/1.0");
    EXPECT_EQ(run({"-url", address + "/page?a", "-useragent", "Own/1.0", "x://?b"}), "2 Own/1.0?a");
    EXPECT_EQ(run({"-useragent", "Own/1.0", "-url", address + "/page", "x://?b"}), "3 Own/1.0");
    EXPECT_EQ(run({"x://y?b=1&c", "-url", address + "/page", "-useragent", "Own/1.0"}),
        "4 Own/1.0?b=1&c");
    EXPECT_EQ(run({"-url", address + "/page", "-useragent", "-verbose"}).find("5 Mozilla/5.0"), 0U);
    EXPECT_EQ(run({"-url", address + "/redirect"}), "moved");
    // A request for credentials is left unanswered: no dialog, and no answer of the server.
    const std::string secret
        = page("const silence = new Promise(resolve => setTimeout(resolve, 1000, 'silence'));"
               "Promise.race([silence, fetch('"
                + address
                + "/secret', {credentials: 'include'})])"
                  ".then(answer => exit('OK', answer.status || answer))",
            "secret.html");
    EXPECT_EQ(run({"-url", file_url(secret)}), "silence");
}

TEST_F(ServedShell, AcceptsAnUntrustedCertificate)
{
    start_display();
    const std::string certificate = m_directory / "certificate.pem";
    output_of("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2"
              " -subj /CN=elsewhere -keyout '"
        + certificate + "' -out '" + certificate + ".crt' 2>/dev/null && cat '" + certificate
        + ".crt' >>'" + certificate + "'");
    EXPECT_EQ(run({"-url", serve(page("exit('OK', location.protocol)"), certificate)}), "https:");
}

TEST_F(ServedShell, RestartRunsTheProgramAnewWithItsArguments)
{
    start_display();
    const std::string address
        = serve(page("fetch('/count').then(r => r.text()).then(text => text.startsWith('1 ')"
                     " ? location = 'tvk://restart' : exit('OK', text + location.search))"));
    start({"-url", address + "/page?x", "-useragent", "Own/1.0"});
    EXPECT_EQ(result(), "") << "the first process leaves no answer";
    expect_on_display("cat '" + store() + "'", "2 Own/1.0?x");
}

TEST_F(Shell, ReloadLoadsTheStartPageAgain)
{
    start_display();
    page("location = 'tvk://reload'", "other.html");
    const std::string start = page("if (window.name) { exit('OK', 'again ' + location.search); }\n"
                                   "else { window.name = 'seen'; location = 'other.html?x'; }");
    EXPECT_EQ(run({"-url", file_url(start)}), "again ");
}

TEST_F(Shell, ReloadWithAQueryEndsTheRunOnlyForARedirect)
{
    start_display();
    const std::string start = page("location = 'tvk://reload'; setTimeout(exit, 500, 'OK', 'on')");
    EXPECT_EQ(run({"x://y?other=1", "-url", file_url(start)}), "on");
    EXPECT_EQ(run({"-url", file_url(start) + "?redirect=nowhere"}), "CKR_CANCEL");
}

TEST_F(Shell, PagesAreFoundBesideTheLibraryThenUnderTheRoot)
{
    start_display();
    install();
    page("exit('OK', 'library ' + location.href.split('/').pop())", "opt/lib/index.html");
    page("exit('OK', 'root ' + location.href.split('/').pop())", "ui/index.html");
    page("exit('OK', 'other ' + location.href.split('/').pop())", "ui/other.html");
    const std::string root = m_directory / "ui/";
    const struct {
        std::vector<std::string> arguments;
        const char* result;
    } rows[] = {
        {{}, "library index.html"},
        {{"demo://start?a=1&b"}, "library index.html?a=1&b"},
        {{"demo://start?"}, "library index.html?"},
        {{"demo://x", "demo://y?a=1"}, "library index.html"},
        {{"-root", root}, "library index.html"},
        {{"-root", root, "-url", "other.html"}, "other other.html"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(run(row.arguments), row.result);
    }
    for (const char* missing : {"other.html", "none.html"}) {
        start({"-url", missing, "-root", root.substr(0, root.size() - 1), "-verbose"});
        wait_for_window();
    }
}

TEST_F(Shell, HostSaysWhatItCannotDo)
{
    const auto fails = [this](std::vector<std::string> arguments, int status, const char* text) {
        start(std::move(arguments));
        EXPECT_EQ(m_process.wait(60), status) << text;
        EXPECT_NE(errors().find(text), std::string::npos) << errors();
        EXPECT_EQ(errors().find('\n'), errors().size() - 1) << errors();
        EXPECT_FALSE(std::filesystem::exists(store()));
    };
    m_environment["DISPLAY"] = "(unset)";
    m_environment["WAYLAND_DISPLAY"] = "(unset)";
    fails({}, 3, "cannot open a display");
    m_environment["DISPLAY"] = "none:7";
    fails({"-url", "index.html"}, 3, "cannot open a display");
    install();
    const std::string library = m_directory / "opt/lib/libtovikgui.so";
    m_directory.write("opt/lib/libtovikgui.so", "no library");
    fails({}, 2, library.c_str());
    std::filesystem::remove(library);
    fails({}, 2, library.c_str());
}

TEST_F(Shell, HostFindsItsPlaceHoweverItIsStarted)
{
    start_display();
    install();
    page("exit('OK', 'here')", "opt/lib/index.html");
    std::filesystem::create_symlink(m_host, m_directory / "link");
    m_program = m_host;
    for (const std::string& name : {m_host, std::string("opt/bin/tovik"),
             std::string("./opt/../link"), m_directory / "link", std::string("tovik")}) {
        m_host = name;
        EXPECT_EQ(run({}), "here") << name;
    }
}

TEST_F(Shell, HostAnswersForItself)
{
    for (const auto& [option, text] : {std::pair("--help", "Usage: tovik"),
             std::pair("--version", "tovik " TOVIK_VERSION "\n")}) {
        m_process = Process({m_host, option}, {}, m_directory / "trace", m_directory / "errors");
        EXPECT_EQ(m_process.wait(60), 0);
        EXPECT_EQ(trace().find(text), 0U) << trace();
    }
}
