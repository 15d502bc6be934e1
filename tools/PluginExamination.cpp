#include "tools/PluginExamination.h"

#include "bridge/WebBridge.h"
#include "tools/EntryPoints.h"
#include "tools/UserAgent.h"
#include "util/Utility.h"
#include "webapp/Options.h"

#include <array>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <functional>

namespace {

/// A text that no page should pass, and what the findings call it.
struct HostileText {
    const char* name;
    const char* text;
};

/// Whether the answer points into the text, its NUL included.
bool lies_in(const char* answer, const char* text)
{
    const std::less_equal<> notAfter;
    return answer != nullptr && text != nullptr && notAfter(text, answer)
        && notAfter(answer, text + std::strlen(text));
}

class PluginExamination {
public:
    PluginExamination(const LibraryFunctions& functions, const std::string& path,
        ChildProgress& progress, Report& report)
        : m_functions(functions)
        , m_path(path)
        , m_progress(progress)
        , m_report(report)
    {
    }

    void run();

private:
    std::string call(const std::string& operation, const std::string& arguments = "") const
    {
        return m_prefix + operation + "(" + arguments + ")";
    }

    bool load(const char* when);
    bool stores_on_failure();
    void finalize();
    void read_values();
    std::string read_property(const char* name);
    void read_user_agent();
    void read_default_options();
    bool read_answer(const char* answer, std::initializer_list<const char*> arguments);
    void call_with(const HostileText& hostile);
    void call_with_hostile_texts();

    const LibraryFunctions& m_functions;
    const std::string& m_path;
    ChildProgress& m_progress;
    Report& m_report;
    std::string m_prefix;
    void* m_plugin = nullptr;
};

/// Loads and initialises the plug-in as the web process does.
bool PluginExamination::load(const char* when)
{
    m_progress.begin(std::string("loading the library, ") + when);
    if (m_functions.available(m_path.c_str()) == nullptr) {
        const char* reason = dlerror();
        m_report.wrong("load",
            std::string(when) + ": " + (reason == nullptr ? "Tovik does not accept it" : reason));
        return false;
    }
    const std::filesystem::path file(m_path);
    std::filesystem::path config = file;
    const std::string stem = file.stem();
    config.replace_filename(stem.substr(stem.starts_with("lib") ? 3 : 0) + ".conf");
    const bool hasConfig = std::filesystem::exists(config);
    // A failure may pass: the library tries again at the next call of a page.
    for (int attempt = 0; attempt < 2; ++attempt) {
        m_progress.begin(call("Initialize", when));
        m_plugin = m_functions.initialize(
            nullptr, hasConfig ? config.c_str() : nullptr, nullptr, nullptr);
        if (m_plugin != nullptr) {
            return true;
        }
    }
    m_report.wrong("initialise", std::string(when) + ": " + call("Initialize") + " fails, twice");
    if (m_prefix == "Plg" && stores_on_failure()) {
        m_report.wrong("initialise",
            call("Initialize")
                + " fails and stores an instance, which is finalised all the same; "
                  "leave *instance null");
    }
    return false;
}

/// Whether PlgInitialize() stores an instance when it fails; called directly, because the library
/// does not tell what was stored.
bool PluginExamination::stores_on_failure()
{
    using NewerInitialize = void*(void*, void*, void*, void*, void** instance);
    const OwnedLibrary library(dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL));
    void* symbol = library ? dlsym(library.get(), "PlgInitialize") : nullptr;
    if (symbol == nullptr) {
        return false;
    }
    void* instance = nullptr;
    auto* initialize = reinterpret_cast<NewerInitialize*>(symbol);
    const void* result = initialize(nullptr, nullptr, nullptr, nullptr, &instance);
    return result == nullptr && instance != nullptr;
}

void PluginExamination::finalize()
{
    m_progress.begin(call("Finalize"));
    m_functions.finalize(m_plugin);
    m_plugin = nullptr;
}

std::string PluginExamination::read_property(const char* name)
{
    m_progress.begin(call("GetProperty", name));
    const char* value = m_functions.getProperty(m_plugin, name);
    std::string text = value == nullptr ? "" : value;
    m_report.ok(name, text.empty() ? "none" : text);
    if (!is_utf8(text)) {
        m_report.wrong(name, "is not UTF-8");
    }
    return text;
}

void PluginExamination::read_user_agent()
{
    const std::string agent = read_property("UserAgentId");
    const std::string product = read_property("ProductInfo");
    const std::string machine = read_property("MachineInfo");
    m_progress.begin("reading the user agent");
    char info[kUserAgentInfoCapacity];
    if (!wa_client_info(info, sizeof info / 2) && !agent.empty()) {
        m_report.wrong("UserAgentId", "is left out: longer than 31 bytes");
    } else if (*info == 0 && !product.empty()) {
        m_report.wrong("ProductInfo",
            "is left out: not of the form Product;...;MMmm,... or too "
            "long for 31 bytes");
    }
    if (!machine.empty() && !wa_system_info(info, sizeof info)) {
        m_report.wrong("MachineInfo", "is left out: not of the form \"System MM.mm;...\"");
    }
    examine_user_agent("", m_report);
}

void PluginExamination::read_default_options()
{
    read_property("ConfigGlobal:Command:App");
    m_progress.begin("reading the default options");
    int count = 0;
    const OwnedList list(wa_load_argument_list(&count));
    std::string shown;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        shown += (shown.empty() ? "\"" : ", \"") + std::string(list[i]) + "\"";
    }
    m_report.ok("default options", shown.empty() ? "none" : shown);
    for (const Option& option : kOptions) {
        if (option.scope != OptionScope::run && has_argument(count, list.get(), option.name) != 0) {
            m_report.wrong("default options",
                std::string(option.name) + " has no effect here, only on the command line");
        }
    }
    const char* url = nullptr;
    if (get_argument(count, list.get(), "-url", &url) == 0 || std::strncmp(url, "res://", 6) != 0) {
        return;
    }
    const OwnedText page(wa_load_url_resource(url));
    if (!page || page[0] == 0) {
        m_report.wrong("start page", std::string("no property Web:") + (url + 6) + " for " + url);
    }
}

void PluginExamination::read_values()
{
    const bool newer = m_prefix == "Plg";
    m_report.ok("WorkingDirectory",
        newer ? m_path.substr(0, m_path.rfind('/') + 1) : "none; the older set receives none");
    read_values_from(m_functions, m_plugin);
    read_user_agent();
    read_default_options();
}

/// Reads an answer to its end, so that a text that is gone already is a crash here, and reports one
/// that points into an argument. False when the answer is not UTF-8, for which a page receives the
/// empty string.
bool PluginExamination::read_answer(
    const char* answer, std::initializer_list<const char*> arguments)
{
    const std::string asked = m_progress.current();
    m_progress.begin("reading the answer of " + asked);
    for (const char* text : arguments) {
        if (lies_in(answer, text) && !m_report.has("lifetime")) {
            m_report.note("lifetime",
                asked
                    + " answers with the text that it received, which is the caller's; return a "
                      "copy");
        }
    }
    return answer == nullptr || is_utf8(answer);
}

void PluginExamination::call_with(const HostileText& hostile)
{
    const char* text = hostile.text;
    const std::string name = hostile.name;
    const std::pair<const char*, const char*> pairs[] = {{text, "x"}, {"x", text}, {text, text}};
    const std::string shown[] = {name + ", \"x\"", "\"x\", " + name, name + ", " + name};
    bool answersAreUtf8 = true;
    for (std::size_t i = 0; i < std::size(pairs); ++i) {
        m_progress.begin(call("SetProperty", shown[i]));
        m_functions.setProperty(m_plugin, pairs[i].first, pairs[i].second);
        m_progress.begin(call("EnumProperty", shown[i]));
        answersAreUtf8
            &= read_answer(m_functions.enumProperty(m_plugin, pairs[i].first, pairs[i].second),
                {pairs[i].first, pairs[i].second});
    }
    m_progress.begin(call("GetProperty", name));
    answersAreUtf8 &= read_answer(m_functions.getProperty(m_plugin, text), {text});
    m_progress.begin(call("Invoke", name));
    m_functions.invoke(m_plugin, text);
    if (!answersAreUtf8 && (text == nullptr || is_utf8(text))) {
        m_report.wrong("answers", "are not UTF-8 where " + name + " is given");
    }
}

void PluginExamination::call_with_hostile_texts()
{
    const std::string large(1 << 20, 'x');
    const HostileText texts[] = {{"null", nullptr}, {"the empty text", ""},
        {"1 MiB", large.c_str()}, {"invalid UTF-8", "a\xff\xc3\x28\xed\xa0\x80"}};
    for (const HostileText& hostile : texts) {
        call_with(hostile);
    }
    m_report.ok("hostile texts", "null, empty, 1 MiB and invalid UTF-8 are survived by every call");
}

void PluginExamination::run()
{
    m_progress.begin("loading the library");
    OwnedLibrary library(dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library) {
        m_report.wrong("load", dlerror());
        return;
    }
    m_progress.begin("closing the library");
    library.reset();
    const char* prefix = examine_entry_points(
        m_path, reinterpret_cast<const void*>(m_functions.available), m_report);
    if (prefix == nullptr) {
        return;
    }
    m_prefix = prefix;
    if (!load("the first time")) {
        return;
    }
    read_values();
    call_with_hostile_texts();
    finalize();
    if (OwnedLibrary(dlopen(m_path.c_str(), RTLD_NOW | RTLD_NOLOAD))) {
        m_report.note("close", "stays in the process when it is closed");
    }
    if (!load("the second time")) {
        return;
    }
    m_progress.begin(call("GetProperty", "UserAgentId"));
    read_answer(m_functions.getProperty(m_plugin, "UserAgentId"), {});
    finalize();
    // The process ends with the plug-in loaded.
    if (load("the third time")) {
        m_report.ok("load", "three times");
    }
}

/// Which of the three standard streams are open.
std::array<bool, 3> open_streams()
{
    std::array<bool, 3> open = {};
    for (std::size_t i = 0; i < open.size(); ++i) {
        open[i] = fcntl(static_cast<int>(i), F_GETFD) >= 0;
    }
    return open;
}

} // namespace

void examine_plugin(const LibraryFunctions& functions, const std::string& path,
    ChildProgress& progress, Report& report)
{
    const std::array<bool, 3> open = open_streams();
    PluginExamination(functions, path, progress, report).run();
    if (open_streams() != open) {
        report.wrong("streams", "closes the standard input, output or error of the process");
    }
}
