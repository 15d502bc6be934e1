// The executable `tovik-plugin-call`: calls a plug-in without a page, in a child process, and says
// what it answers and what is wrong about it.
#include "tools/Child.h"
#include "tools/ElfFile.h"
#include "tools/WatchedPlugin.h"

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <getopt.h>
#include <iostream>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kFlagged = 1;
constexpr int kCannotCall = 2;

constexpr char kUsage[] = R"(Usage: tovik-plugin-call [--limit SECONDS] PLUGIN.so STEP...
       tovik-plugin-call [--limit SECONDS] PLUGIN.so -

Loads a plug-in as the web process does, makes the calls of the steps in their order, and prints a
line for each: the call, its result and its time. After "WRONG" it says what is wrong. With "-" the
steps are read from standard input, one per line; ' and " hold words together there.

  set NAME=VALUE       SetProperty
  get NAME             GetProperty
  enum FIRST SECOND    EnumProperty
  invoke NAME          Invoke

  --limit SECONDS      end the plug-in's process after this time, 1 to 3600 (default 20)

Values of properties whose name holds "pin", "password" or "secret" are not printed.
TOVIK_SECRET_NAMES=+WORD,... adds words to these; without the "+" it replaces them.

Exit status: 0 all steps are done; 1 something is wrong, or the plug-in has crashed; 2 usage, or the
plug-in cannot be loaded.
)";

/// A call that was asked for.
struct CallStep {
    std::string verb;
    std::string first;
    std::string second; // empty where the verb has one text
};

struct Options {
    std::string plugin;
    std::vector<std::string> words;
    unsigned int limit = kDefaultLimit;
};

bool read_options(int argc, char** argv, Options& options)
{
    constexpr option kLongOptions[] = {{"limit", required_argument, nullptr, 'l'}, {}};
    int found = 0;
    opterr = 0;
    // "+": what follows the plug-in is a step, with a "-" in front too.
    while ((found = getopt_long(argc, argv, "+", kLongOptions, nullptr)) != -1) {
        if (found != 'l' || !read_limit(optarg, options.limit)) {
            return false;
        }
    }
    if (optind + 1 >= argc) {
        return false;
    }
    options.plugin = argv[optind];
    options.words.assign(argv + optind + 1, argv + argc);
    return true;
}

/// The steps that these words are; `place` names them in the text of a fault, which is thrown.
std::vector<CallStep> steps_of(const std::vector<std::string>& words, const std::string& place)
{
    std::vector<CallStep> steps;
    for (std::size_t at = 0; at < words.size();) {
        const std::string& verb = words[at];
        const bool known = verb == "set" || verb == "get" || verb == "enum" || verb == "invoke";
        const std::size_t count = verb == "enum" ? 2 : 1;
        if (!known) {
            throw std::invalid_argument(
                place + '"' + verb + "\" is no step; write set, get, enum or invoke");
        }
        if (words.size() - at <= count) {
            throw std::invalid_argument(place + '"' + verb + "\" needs a text after it, enum two");
        }
        CallStep step = {verb, words[at + 1], verb == "enum" ? words[at + 2] : ""};
        if (verb == "set") {
            const std::size_t equals = step.first.find('=');
            if (equals == std::string::npos) {
                throw std::invalid_argument(place + "set needs NAME=VALUE");
            }
            step.second = step.first.substr(equals + 1);
            step.first.resize(equals);
        }
        steps.push_back(step);
        at += 1 + count;
    }
    return steps;
}

/// The words of a line: blanks separate them, quotes hold them together.
std::vector<std::string> words_of(const std::string& line, const std::string& place)
{
    std::vector<std::string> words;
    bool inWord = false;
    char quote = 0;
    for (const char c : line) {
        const bool blank = c == ' ' || c == '\t' || c == '\r';
        if (quote == 0 && blank) {
            inWord = false;
            continue;
        }
        if (!inWord) {
            words.emplace_back();
            inWord = true;
        }
        if (quote == 0 && (c == '\'' || c == '"')) {
            quote = c;
        } else if (c == quote) {
            quote = 0;
        } else {
            words.back() += c;
        }
    }
    if (quote != 0) {
        throw std::invalid_argument(place + "a quote is not closed");
    }
    return words;
}

std::vector<CallStep> read_steps(const std::vector<std::string>& words)
{
    if (words.size() != 1 || words[0] != "-") {
        return steps_of(words, "");
    }
    std::vector<CallStep> steps;
    std::string line;
    for (unsigned int number = 1; std::getline(std::cin, line); ++number) {
        const std::string place = "line " + std::to_string(number) + ": ";
        const std::vector<std::string> parts = words_of(line, place);
        if (parts.empty() || parts[0].starts_with('#')) {
            continue;
        }
        const std::vector<CallStep> step = steps_of(parts, place);
        if (step.size() > 1) {
            throw std::invalid_argument(place + "has more than one step");
        }
        steps.insert(steps.end(), step.begin(), step.end());
    }
    return steps;
}

/// Makes the call with texts that are gone afterwards, as those of a page are.
void make_call(WatchedPlugin& plugin, const CallStep& step)
{
    const std::string first(step.first);
    const std::string second(step.second);
    if (step.verb == "set") {
        plugin.SetProperty(first.c_str(), second.c_str());
    } else if (step.verb == "get") {
        plugin.GetProperty(first.c_str());
    } else if (step.verb == "enum") {
        plugin.EnumProperty(first.c_str(), second.c_str());
    } else {
        plugin.Invoke(first.c_str());
    }
}

/// lib<brand>.so has its configuration in <brand>.conf beside it.
std::string config_of(const std::filesystem::path& plugin)
{
    std::filesystem::path config = plugin;
    const std::string stem = plugin.stem();
    config.replace_filename(stem.substr(stem.starts_with("lib") ? 3 : 0) + ".conf");
    return std::filesystem::exists(config) ? config.string() : "";
}

int cannot_call(const std::string& why)
{
    std::fprintf(stderr, "tovik-plugin-call: %s\n", escaped(why).c_str());
    return kCannotCall;
}

/// The work of the child: all steps, whose lines go to `output` at once.
void call_plugin(const std::string& path, const std::vector<CallStep>& steps, int output,
    const WatchedPlugin::Begin& begin, Report& report)
{
    WatchedPlugin plugin(begin, [&](const std::string& line, bool wrong) {
        // In the place of what the parent may show.
        const char* const start = isatty(output) == 1 ? kClearLine : "";
        if (dprintf(output, "%s%s\n", start, line.c_str()) < 0) {
            report.wrong("output", "cannot be written");
        }
        if (wrong) {
            report.wrong("call", line);
        }
    });
    begin("loading the library");
    if (plugin.Available(path.c_str()) == nullptr) {
        const char* reason = plugin.MissingEntry() == nullptr ? dlerror() : plugin.MissingEntry();
        cannot_call(path + " cannot be loaded: " + (reason == nullptr ? "" : reason));
        report.wrong("load", "");
        return;
    }
    const std::string config = config_of(path);
    if (!plugin.Initialize(nullptr, config.empty() ? nullptr : config.c_str(), nullptr, nullptr)) {
        return;
    }
    for (const CallStep& step : steps) {
        make_call(plugin, step);
    }
    plugin.Finalize();
}

int run(const Options& options)
{
    const std::vector<CallStep> steps = read_steps(options.words);
    if (!std::filesystem::exists(options.plugin)) {
        return cannot_call("there is no file " + options.plugin);
    }
    const std::string plugin = std::filesystem::canonical(options.plugin);
    const std::string fault = elf_fault(plugin);
    if (!fault.empty()) {
        return cannot_call(plugin + " " + fault);
    }
    // The child's own standard output is its standard error, for what the plug-in prints.
    const int output = dup(STDOUT_FILENO);
    Report report;
    const std::string end
        = run_in_child(options.limit, report, [&](auto& progress, Report& childReport) {
              call_plugin(
                  plugin, steps, output, [&](const std::string& call) { progress.begin(call); },
                  childReport);
          });
    if (report.has("load")) {
        return kCannotCall;
    }
    const std::string last = end.empty() ? "" : "WRONG " + end + "\n";
    if (report.has("output") || !print(last)) {
        return cannot_call("the lines cannot be written");
    }
    return report.any_wrong() || !end.empty() ? kFlagged : 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    Options options;
    if (!read_options(argc, argv, options)) {
        return cannot_call("usage: tovik-plugin-call [--limit SECONDS] PLUGIN.so STEP...");
    }
    try {
        return run(options);
    } catch (const std::exception& failure) {
        return cannot_call(failure.what());
    }
}
