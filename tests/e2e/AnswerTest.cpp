// How a page's answer reaches the result file.
#include "tests/e2e/Shell.h"

namespace {

struct Answer {
    const char* name;
    const char* body; // of the page, behind its prelude
    const char* result;

    friend void PrintTo(const Answer& answer, std::ostream* stream) { *stream << answer.name; }
};

class PageAnswer : public Shell, public testing::WithParamInterface<Answer> { };

const Answer kAnswers[] = {
    {"Response", "location = 'tvk://exit?status=CKR_OK&response=abc'", "abc"},
    {"StatusAlone", "location = 'tvk://exit?status=OK'", "OK"},
    {"OtherStatus", "location = 'tvk://exit?status=ERR&response=abc'", "ERR"},
    {"NoStatus", "location = 'tvk://exit'", "CKR_CANCEL"},
    {"EmptyStatus", "location = 'tvk://exit?status=&response=abc'", "CKR_CANCEL"},
    {"CaseOfStatus", "location = 'tvk://exit?status=ok&response=abc'", "ok"},
    {"DecodedStatus", "location = 'tvk://exit?response=abc&status=CKR%5FOK'", "abc"},
    {"Utf8", "exit('OK', '\\u00e9\\u20ac\\ud83d\\ude00 a+b&c=d%')", "é€😀 a+b&c=d%"},
    {"NulEscape", "location = 'tvk://exit?status=OK&response=ab%00cd'", "ab"},
    {"Fragment", "location = 'tvk://exit?status=OK&response=a#b'", "a#b"},
    // WebKit lower-cases the scheme of a navigation.
    {"UpperCaseScheme", "location = 'TVK://exit?status=OK&response=abc'", "abc"},
    {"Frame", "document.body.innerHTML = '<iframe src=\"tvk://exit?status=OK\"></iframe>'", "OK"},
    {"Link",
        "document.body.innerHTML = '<a href=\"tvk://exit?status=OK\">x</a>';"
        "document.querySelector('a').click()",
        "OK"},
    {"Form",
        "document.body.innerHTML = '<form action=\"tvk://exit\"><input name=status value=OK>"
        "<input name=response value=\"a b\"></form>'; document.forms[0].submit()",
        "a b"},
    {"PostedForm",
        "document.body.innerHTML = '<form method=post action=\"tvk://exit?status=OK\"></form>';"
        "document.forms[0].submit()",
        "OK"},
    {"Refresh",
        "document.head.innerHTML = '<meta http-equiv=refresh content=\"0;tvk://exit?status=OK\">'",
        "OK"},
    {"LastOfTwo",
        "onload = () => { document.body.innerHTML ="
        "'<iframe src=\"tvk://unknown?status=OK\"></iframe>'; setTimeout(exit, 100, 'B', '') }",
        "B"},
    {"TwentyMegabytes", "exit('OK', 'x'.repeat(20000000).length)", "20000000"},
    {"WindowOpenDoesNotAct", "window.open('tvk://exit?status=A'); setTimeout(exit, 200, 'B', '')",
        "B"},
};

} // namespace

TEST_P(PageAnswer, ReachesTheResultFile)
{
    start_display();
    EXPECT_EQ(run({"-url", file_url(page(GetParam().body))}), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Kinds, PageAnswer, testing::ValuesIn(kAnswers),
    [](const auto& answer) { return answer.param.name; });

TEST_F(Shell, MalformedActionsDoNothing)
{
    start_display();
    const std::string address = page(R"(
        const urls = ['tvk://', 'tvk://?status=OK', 'tvk://close', 'tvk://%', 'tvk://exit%3Fstatus',
            'tvk://resize?status=%', 'tvk://resize?status=%zz', 'tvk://resize?status=-1',
            'tvk://resize?status=0xZZZZZZZZZ', 'tvk://resize?status=' + '9'.repeat(100000),
            'tvk://resize', 'tvk://resize?status=%00', 'tvk:///exit', 'tvk://' + 'a'.repeat(70000),
            'tvk://exit/?status=OK', 'tvk://EXIT%00?status=OK', 'tvk://Exit?status=\u0000'];
        for (const url of urls) {
            const frame = document.createElement('iframe');
            frame.src = url;
            document.body.append(frame);
        }
        onload = () => setTimeout(exit, 300, 'OK', 'alive');)");
    EXPECT_EQ(run({"-url", file_url(address), "-verbose"}), "alive");
    EXPECT_NE(trace().find("App - Action: close\n"), std::string::npos);
}

TEST_F(Shell, TracesTheRun)
{
    start_display();
    const std::string address = file_url(page("location = 'tvk://exit?response=x'"));
    EXPECT_EQ(run({"-url", address, "-verbose", "-position", "0x000A0014", "-useragent", "A/1"}),
        "CKR_CANCEL");
    EXPECT_EQ(trace(),
        "App - UserAgent: A/1\n"
        "App - URL: "
            + address
            + "\n"
              "App - Screen size 0x05000400\n"
              "App - Dialog size 0x01400200\n"
              "App - Dialog position 0x000A0014\n"
              "App - Action: exit\n"
              "App -    Status   [null]\n"
              "App -    Response [null]\n");
}

TEST_F(Shell, ClosingTheWindowCancels)
{
    start_display("1280x1024", true);
    start({"-url", file_url(page(""))});
    wait_for_window();
    on_display("xdotool windowactivate --sync $WINDOW key alt+F4");
    EXPECT_EQ(result(), "CKR_CANCEL");
}

TEST_F(Shell, ResultFileThatCannotBeWrittenIsPassedOver)
{
    start_display();
    const std::string address = file_url(page("exit('OK', 'new')"));
    const std::string longName = m_directory / std::string(300, 'x');
    for (const std::string& path :
        {std::string(m_directory.path()), m_directory / "none/result", longName, std::string()}) {
        EXPECT_EQ(run({"-url", address, "-store", path}), "") << path;
    }
    EXPECT_EQ(run({"-url", address, "-store"}), "");
    const std::string older = m_directory.write("older", "an older and longer answer");
    run({"-url", address, "-store", older});
    EXPECT_EQ(contents_of(older), "new");
}

TEST_F(Shell, BadOptionValuesAreSurvived)
{
    start_display();
    const std::string address = file_url(page("exit('OK', 'alive')"));
    const std::string large(100000, '9');
    const std::string binary = "\x01\xff\xfe%s%n\x7f";
    for (const char* option : {"-title", "-icon", "-size", "-position", "-wait", "-root", "-plugin",
             "-config", "-useragent"}) {
        for (const std::string& value : {std::string(), binary, large}) {
            // A pause that a saturated number asks for would outlast the test.
            if (std::string(option) == "-wait" && value == large) {
                continue;
            }
            // WebKit refuses a user agent and a directory that are no UTF-8 with a message.
            m_environment["G_DEBUG"] = value == binary ? "" : "fatal-criticals";
            EXPECT_EQ(run({"-url", address, option, value}), "alive") << option;
        }
    }
}
