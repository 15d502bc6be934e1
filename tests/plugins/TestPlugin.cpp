// A plug-in that writes down what happens to it and has the faults that a test asks for. Compiled
// with NEWER and OLDER, how many entry points of each set it exports, in their order, and with
// FAILING when its initialisation fails.
#include <tovik/plugin.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

namespace {

/// Appends a line to the file that the environment names, which outlives every process.
void write_down(const std::string& line)
{
    if (const char* path = std::getenv("TEST_PLUGIN_LOG")) {
        std::ofstream(path, std::ios::app) << line + '\n';
    }
}

std::string shown(const char* text)
{
    return text == nullptr ? "null" : text;
}

struct Instance {
    std::map<std::string, std::string> properties;
    std::string answer;
};

/// A text of 2 GiB in the memory of 64 MiB: one file, mapped over and over again.
const char* endless_text()
{
    constexpr std::size_t kPart = 1U << 26U, kWhole = 1U << 31U;
    const int file = memfd_create("text", 0);
    std::ofstream("/proc/self/fd/" + std::to_string(file)) << std::string(kPart, 'x');
    void* text = mmap(nullptr, kWhole + 1, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    for (std::size_t at = 0; at < kWhole; at += kPart) {
        static_cast<void>(
            mmap(static_cast<char*>(text) + at, kPart, PROT_READ, MAP_SHARED | MAP_FIXED, file, 0));
    }
    return static_cast<const char*>(text);
}

#ifndef FAILING
#define FAILING 0
#endif

Instance& instance_of(void* instance)
{
    return *static_cast<Instance*>(instance);
}

/// Bytes of a text that are written down.
constexpr std::size_t kShown = 260;

/// Whether the static objects of the library are gone.
bool g_StaticsAreGone = false;
const struct Statics {
    ~Statics() { g_StaticsAreGone = true; }
} g_Statics;

} // namespace

extern "C" {

void* initialize_newer(void* a, void* b, void* c, void* d, void** instance)
{
    write_down(std::string("newer initialize") + (a || b || c || d ? " with arguments" : ""));
    *instance = FAILING && std::getenv("TEST_STORES") == nullptr ? nullptr : new Instance;
    // Success is any non-zero pointer, one with a zero low half included.
    return FAILING ? nullptr : reinterpret_cast<void*>(std::uintptr_t {1} << sizeof(void*) * 4);
}

void* initialize_older(const char* text, const char* global, const char* local,
    void (*callback)(const char*, unsigned long))
{
    write_down("older initialize " + shown(text) + " " + shown(global) + " " + shown(local)
        + (callback == nullptr ? " null" : " callback"));
    return FAILING ? nullptr : new Instance;
}

void finalize(void* instance)
{
    if (g_StaticsAreGone && std::getenv("TEST_NEEDS_STATICS") != nullptr) {
        std::abort();
    }
    write_down("finalize");
    delete &instance_of(instance);
}

void set_property(void* instance, const char* name, const char* value)
{
    if (shown(name) != "quiet") {
        write_down("set " + shown(name) + " " + shown(value).substr(0, kShown));
    }
    instance_of(instance).properties[shown(name)] = shown(value);
}

const char* get_property(void* instance, const char* name)
{
    Instance& self = instance_of(instance);
    const std::string wanted = shown(name);
    // The properties that the host reads come from the environment, a colon written as "_".
    std::string variable = "TEST_" + wanted;
    std::replace(variable.begin(), variable.end(), ':', '_');
    const char* value = std::getenv(variable.c_str());
    if (shown(value) == "abort") {
        std::abort();
    }
    if (value != nullptr) {
        return value;
    }
    if (wanted == "invalid") {
        return "a\xff\xfe";
    }
    if (wanted == "freed") {
        char* text = new char[64] {"freed"};
        char* volatile answer = text; // which keeps the compiler from seeing it
        delete[] text;
        return answer; // NOLINT(clang-analyzer-cplusplus.NewDelete): the fault it is here for
    }
    if (wanted == "endless") {
        return endless_text();
    }
    if (wanted == "huge") {
        self.answer.assign(50'000'000, 'x');
    } else if (wanted.starts_with("length:")) {
        self.answer = std::to_string(self.properties[wanted.substr(7)].size());
    } else if (wanted == "resident") {
        long pages = 0;
        std::ifstream("/proc/self/statm").ignore(32, ' ') >> pages;
        self.answer = std::to_string(pages * 4096);
    } else {
        const auto property = self.properties.find(wanted);
        return property == self.properties.end() ? nullptr : property->second.c_str();
    }
    return self.answer.c_str();
}

const char* enum_property(void* instance, const char* first, const char* second)
{
    if (shown(first) == "echo" || std::getenv("TEST_ECHO") != nullptr) {
        return second;
    }
    Instance& self = instance_of(instance);
    self.answer = '<' + shown(first) + '|' + shown(second) + '>';
    return shown(first) == "none" ? nullptr : self.answer.c_str();
}

unsigned long invoke(void*, const char* name)
{
    // A test may ask for a fault of calls without a text.
    const std::string command = shown(name != nullptr ? name : std::getenv("TEST_NULL_COMMAND"));
    if (command != "quiet") {
        write_down("invoke " + command.substr(0, kShown));
    }
    if (command == "abort") {
        std::abort();
    } else if (command == "throw") {
        throw std::runtime_error("thrown by the plug-in");
    } else if (command == "hang") {
        std::this_thread::sleep_for(std::chrono::hours(1));
    } else if (command == "slow") {
        std::this_thread::sleep_for(std::chrono::milliseconds(120));
    } else if (command == "exit") {
        std::_Exit(0);
    } else if (command == "close") {
        close(1);
    } else if (command == "kill") {
        kill(0, SIGTERM);
    }
    return command == "all ones" ? 0xFFFFFFFFUL
        : command == "long"      ? static_cast<unsigned long>(0x700000005ULL)
                                 : command.size();
}

} // extern "C"

// Both sets are other names of the functions above.
// NOLINTNEXTLINE(bugprone-macro-parentheses): a name stands without them where it is declared
#define ENTRY(name, function) extern "C" decltype(name) name __attribute__((alias(#function)))
#define FIVE_ENTRIES(prefix, function)                                                             \
    ENTRY(prefix##Initialize, function);                                                           \
    ENTRY(prefix##Finalize, finalize);                                                             \
    ENTRY(prefix##SetProperty, set_property);                                                      \
    ENTRY(prefix##GetProperty, get_property);                                                      \
    ENTRY(prefix##EnumProperty, enum_property)

#if NEWER > 0
FIVE_ENTRIES(Plg, initialize_newer);
#endif
#if NEWER > 5
ENTRY(PlgInvoke, invoke);
#endif
#if OLDER > 0
FIVE_ENTRIES(P_, initialize_older);
#endif
#if OLDER > 5
ENTRY(P_Invoke, invoke);
#endif
