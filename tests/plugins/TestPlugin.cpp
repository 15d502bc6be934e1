// A plug-in that writes down what happens to it and has the faults that a test asks for. Compiled
// with NEWER and OLDER, how many entry points of each set it exports, in their order, and with
// FAILING when its initialisation fails.
#include <tovik/plugin.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

/// Appends a line to the file that the environment names, which outlives every process.
void write_down(const std::string& line)
{
    const char* path = std::getenv("TEST_PLUGIN_LOG");
    FILE* log = path == nullptr ? nullptr : std::fopen(path, "a");
    if (log != nullptr) {
        std::fprintf(log, "%s\n", line.c_str());
        std::fclose(log);
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

Instance* create()
{
#ifdef FAILING
    return nullptr;
#else
    return new Instance;
#endif
}

Instance& instance_of(void* instance)
{
    return *static_cast<Instance*>(instance);
}

void set_property(void* instance, const char* name, const char* value)
{
    if (shown(name) != "quiet") {
        write_down("set " + shown(name) + " " + shown(value).substr(0, 60));
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
    if (const char* value = std::getenv(variable.c_str())) {
        self.answer = value;
        return self.answer.c_str();
    }
    const char* abortAt = std::getenv("TEST_PLUGIN_ABORT");
    if (abortAt != nullptr && wanted == abortAt) {
        std::abort();
    }
    if (wanted == "invalid") {
        return "a\xff\xfe";
    }
    if (wanted == "huge") {
        self.answer.assign(50'000'000, 'x');
    } else if (wanted.starts_with("length:")) {
        self.answer = std::to_string(self.properties[wanted.substr(7)].size());
    } else if (wanted == "resident") {
        long pages = 0;
        std::ifstream("/proc/self/statm").ignore(32, ' ') >> pages;
        self.answer = std::to_string(pages * 4096);
    } else if (self.properties.count(wanted) == 0) {
        return nullptr;
    } else {
        self.answer = self.properties[wanted];
    }
    return self.answer.c_str();
}

const char* enum_property(void* instance, const char* first, const char* second)
{
    if (shown(first) == "none") {
        return nullptr;
    }
    Instance& self = instance_of(instance);
    self.answer = '<' + shown(first) + '|' + shown(second) + '>';
    return self.answer.c_str();
}

unsigned long invoke(void*, const char* name)
{
    // A test may ask for a fault of calls without a text.
    const std::string command = shown(name != nullptr ? name : std::getenv("TEST_NULL_COMMAND"));
    if (command != "quiet") {
        write_down("invoke " + command.substr(0, 60));
    }
    if (command == "abort") {
        std::abort();
    } else if (command == "throw") {
        throw std::runtime_error("thrown by the plug-in");
    } else if (command == "hang") {
        std::this_thread::sleep_for(std::chrono::hours(1));
    } else if (command == "exit") {
        std::_Exit(0);
    }
    return command == "all ones" ? 0xFFFFFFFFUL
        : command == "long"      ? 0x700000005UL
                                 : command.size();
}

/// Whether the static objects of the library are gone.
bool g_StaticsAreGone = false;
const struct Statics {
    ~Statics() { g_StaticsAreGone = true; }
} g_Statics;

void finalize(void* instance)
{
    if (g_StaticsAreGone && std::getenv("TEST_NEEDS_STATICS") != nullptr) {
        std::abort();
    }
    write_down("finalize");
    delete &instance_of(instance);
}

} // namespace

// What both sets have alike.
#define COMMON(prefix)                                                                             \
    void prefix##Finalize(void* i)                                                                 \
    {                                                                                              \
        finalize(i);                                                                               \
    }                                                                                              \
    void prefix##SetProperty(void* i, const char* a, const char* b)                                \
    {                                                                                              \
        set_property(i, a, b);                                                                     \
    }                                                                                              \
    const char* prefix##GetProperty(void* i, const char* a)                                        \
    {                                                                                              \
        return get_property(i, a);                                                                 \
    }                                                                                              \
    const char* prefix##EnumProperty(void* i, const char* a, const char* b)                        \
    {                                                                                              \
        return enum_property(i, a, b);                                                             \
    }

#if NEWER > 0
void* PlgInitialize(void* a, void* b, void* c, void* d, void** instance)
{
    write_down(std::string("newer initialize") + (a || b || c || d ? " with arguments" : ""));
    *instance = create();
    // Success is any non-zero pointer, one with a zero low half included.
    return *instance == nullptr ? nullptr : reinterpret_cast<void*>(0x100000000UL);
}
COMMON(Plg)
#endif
#if NEWER > 5
unsigned long PlgInvoke(void* instance, const char* name)
{
    return invoke(instance, name);
}
#endif

#if OLDER > 0
void* P_Initialize(const char* text, const char* global, const char* local,
    void (*callback)(const char*, unsigned long))
{
    write_down("older initialize " + shown(text) + " " + shown(global) + " " + shown(local)
        + (callback == nullptr ? " null" : " callback"));
    return create();
}
COMMON(P_)
#endif
#if OLDER > 5
unsigned long P_Invoke(void* instance, const char* name)
{
    return invoke(instance, name);
}
#endif
