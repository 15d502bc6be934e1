#include "tools/WatchedPlugin.h"

#include "tools/Report.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sys/uio.h>
#include <unistd.h>

namespace {

/// A page stands still meanwhile, and a person notices.
constexpr double kSlow = 100; // milliseconds

/// Longer answers reach a page as the empty string.
constexpr std::size_t kLongestAnswer = 2147483632;

/// How much of an answer is compared later.
constexpr std::size_t kCompared = std::size_t {1} << 16U;

constexpr unsigned long kFunctionNotSupported = 0x54;

/// Properties for which the host asks every plug-in, and which may be absent.
bool is_optional(const char* name)
{
    constexpr const char* kNames[]
        = {"UserAgentId", "ProductInfo", "MachineInfo", "ConfigGlobal:Command:App"};
    return name != nullptr
        && std::any_of(std::begin(kNames), std::end(kNames),
            [=](const char* row) { return std::strcmp(row, name) == 0; });
}

/// Takes the place of texts in local variables of calls that have returned.
[[gnu::noinline]] void overwrite_stack()
{
    volatile char bytes[std::size_t {1} << 15U];
    for (volatile char& byte : bytes) {
        byte = '\x7F';
    }
}

/// Takes the place of texts that have been freed: four blocks of each small size, and of the size
/// of this text.
void overwrite_freed_memory(std::size_t size)
{
    constexpr std::size_t kLargestBin = 1040;
    std::vector<std::string> blocks;
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t small = 16; small <= kLargestBin; small += 16) {
            blocks.emplace_back(small, '\x7F');
        }
        blocks.emplace_back(size, '\x7F');
    }
}

/// Whether the memory still holds what the copy holds. The kernel reads it, since it may be gone.
bool still_holds(const char* text, const std::string& copy)
{
    std::string now(copy.size(), '\0');
    const iovec local = {now.data(), now.size()};
    const iovec remote = {const_cast<char*>(text), now.size()};
    const ssize_t count = process_vm_readv(getpid(), &local, 1, &remote, 1, 0);
    if (count < 0 && errno != EFAULT) {
        return true; // the system does not permit it, and nothing is known
    }
    return now == copy;
}

} // namespace

WatchedPlugin::WatchedPlugin(Begin begin, Print print)
    : m_begin(std::move(begin))
    , m_print(std::move(print))
    , m_secrets(std::getenv(kSecretNamesVariable))
{
}

WatchedPlugin::Line WatchedPlugin::watch(const std::string& call, const std::function<void()>& work)
{
    if (last_answer_has_changed()) {
        m_print(m_lastCall
                + " WRONG dangling: the text has changed before the next call; it has to live "
                  "until then",
            true);
    }
    m_lastAnswer = nullptr;
    m_begin(call);
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return {call, time.count()};
}

void WatchedPlugin::print(const Line& line) const
{
    char time[48];
    std::snprintf(time, sizeof time, " (%.2f ms)", line.milliseconds);
    std::string text = line.call + (line.result.empty() ? "" : " = ") + line.result + time;
    for (const std::string& fault : line.faults) {
        text += " WRONG " + fault;
    }
    if (line.milliseconds > kSlow) {
        text += " NOTE slow: over 100 ms, in which the page stands still";
    }
    m_print(text, !line.faults.empty());
}

bool WatchedPlugin::last_answer_has_changed()
{
    if (m_lastAnswer == nullptr) {
        return false;
    }
    overwrite_freed_memory(m_lastCopy.size());
    overwrite_stack();
    return !still_holds(m_lastAnswer, m_lastCopy);
}

/// Reads an answer that is not null.
void WatchedPlugin::judge_answer(Line& line, const char* answer, bool secret)
{
    m_begin("reading the answer of " + line.call);
    const std::size_t length = std::strlen(answer);
    m_lastCall = line.call;
    m_lastCopy.assign(answer, std::min(length + 1, kCompared));
    m_lastAnswer = answer;
    line.result = secret ? kHidden : m_secrets.shown(answer);
    if (length > kLongestAnswer) {
        line.faults.emplace_back(R"(too long: of more than 2 GiB a page receives "")");
    } else if (!is_utf8({answer, length})) {
        line.faults.emplace_back(R"(not UTF-8: a page receives "")");
    }
    if (last_answer_has_changed()) {
        line.faults.emplace_back("dangling: the text is in memory that is used again");
        m_lastAnswer = nullptr;
    }
}

bool WatchedPlugin::Initialize(
    const char* text, const char* globalConfig, const char* localConfig, PluginCallback callback)
{
    bool done = false;
    Line line = watch("Initialize(" + m_secrets.shown(text) + ", " + m_secrets.shown(globalConfig)
            + ", " + m_secrets.shown(localConfig) + ")",
        [&] { done = CWrapperPlugin::Initialize(text, globalConfig, localConfig, callback); });
    if (!done) {
        line.faults.emplace_back("failed: there is no plug-in until a later attempt succeeds");
    }
    print(line);
    return done;
}

void WatchedPlugin::Finalize()
{
    print(watch("Finalize()", [&] { CWrapperPlugin::Finalize(); }));
}

void WatchedPlugin::SetProperty(const char* name, const char* value)
{
    const std::string shown = m_secrets.holds(name) ? kHidden : m_secrets.shown(value);
    print(watch("SetProperty(" + m_secrets.shown(name) + ", " + shown + ")",
        [&] { CWrapperPlugin::SetProperty(name, value); }));
}

const char* WatchedPlugin::GetProperty(const char* name)
{
    const char* answer = nullptr;
    Line line = watch("GetProperty(" + m_secrets.shown(name) + ")",
        [&] { answer = CWrapperPlugin::GetProperty(name); });
    if (answer != nullptr) {
        judge_answer(line, answer, m_secrets.holds(name));
    } else {
        line.result = "null";
        if (!is_optional(name)) {
            line.faults.emplace_back(R"(null: no property of this name; a page receives "")");
        }
    }
    print(line);
    return answer;
}

const char* WatchedPlugin::EnumProperty(const char* first, const char* second)
{
    const bool secret = m_secrets.holds(first);
    const std::string shown = secret ? kHidden : m_secrets.shown(second);
    const char* answer = nullptr;
    Line line = watch("EnumProperty(" + m_secrets.shown(first) + ", " + shown + ")",
        [&] { answer = CWrapperPlugin::EnumProperty(first, second); });
    if (answer != nullptr) {
        judge_answer(line, answer, secret || m_secrets.holds(second));
    } else {
        line.result = "null";
        line.faults.emplace_back(R"(null: no answer to these texts; a page receives "")");
    }
    print(line);
    return answer;
}

unsigned long WatchedPlugin::Invoke(const char* name)
{
    unsigned long status = 0;
    Line line = watch(
        "Invoke(" + m_secrets.shown(name) + ")", [&] { status = CWrapperPlugin::Invoke(name); });
    line.result = status_text(status);
    if (status == kFunctionNotSupported) {
        line.faults.emplace_back("unknown command: the plug-in does not support it");
    } else if (status > UINT32_MAX) {
        line.faults.emplace_back("more than 32 bits: a page receives the low ones");
    }
    print(line);
    return status;
}
