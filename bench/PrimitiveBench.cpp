// PrimitiveBench.cpp: the primitives against the C library's functions for the same work, over
// texts and blocks of five sizes, and the worst case of each search over growing texts. Each
// benchmark is named FUNCTION/PLACE/CONTESTANT/BYTES. At the place "even" the operands begin at
// multiples of 64, at the place "odd" at odd addresses, each at another distance from one.
//
// Both contestants are called through a pointer whose value the compiler cannot know, and their
// operands are hidden from it before each call, so that it can neither replace a call by
// instructions of its own nor move it out of the loop.
#include "util/MemoryUtil.h"
#include "util/StringUtil.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace {

using Text = const char*;

constexpr std::size_t kSizes[] = {8, 32, 256, 4096, std::size_t {1} << 20};
constexpr std::size_t kWorstSizes[] = {1000, 10000, 100000, 1000000, 10000000, 1 << 20};

// Letters of the needle other than the last one occur in the haystacks, so that a search meets
// partial matches as it does in real texts.
constexpr char kNeedle[] = "tones!";
constexpr char kMark = '!';

/// Where operands begin in memory.
struct Place {
    const char* name;
    std::size_t first; // bytes after a multiple of 64
    std::size_t second;
};
constexpr Place kPlaces[] = {{"even", 0, 0}, {"odd", 3, 13}};

/// A terminated text, or room for one, at a distance from a multiple of 64.
class Placed {
public:
    Placed(const std::string& text, std::size_t distance)
        : m_memory(text.size() + 1 + 2 * kLine)
        , m_start(m_memory.data())
    {
        m_start += kLine - reinterpret_cast<std::uintptr_t>(m_start) % kLine + distance;
        std::copy(text.begin(), text.end(), m_start);
    }
    char* get() const { return m_start; }

private:
    static constexpr std::size_t kLine = 64;
    std::vector<char> m_memory;
    char* m_start;
};

/// Text of `size` letters, the same in each run.
std::string letters(std::size_t size)
{
    std::mt19937 random(1);
    std::string text(size, ' ');
    for (char& c : text) {
        c = static_cast<char>('a' + random() % 26);
    }
    return text;
}

/// The same text with every second letter as a capital.
std::string half_capital(std::string text)
{
    for (std::size_t i = 0; i < text.size(); i += 2) {
        text[i] = static_cast<char>(std::toupper(text[i]));
    }
    return text;
}

/// Makes the compiler forget what the pointer is and what it knows of memory. In a register, for
/// g++ 12 may read a variable that it never stored when the operand may also be in memory, as it
/// may with DoNotOptimize().
template <typename T> void hide(T*& pointer)
{
    asm volatile("" : "+r"(pointer) : : "memory");
}

/// Runs `call(function)` over `size` bytes as one benchmark; `makeCall()` builds its operands. The
/// number of calls is fixed: one that is found by timing is far too small when other work of the
/// machine falls into that time.
template <typename Function, typename MakeCall>
void add(const std::string& name, std::size_t size, Function* function, MakeCall makeCall)
{
    constexpr std::size_t kBytes = std::size_t {1} << 25;
    const std::size_t calls = std::clamp<std::size_t>(kBytes / size, 4, std::size_t {1} << 20);
    const auto run = [=](benchmark::State& state) {
        auto call = makeCall();
        Function* called = function;
        hide(called);
        for ([[maybe_unused]] auto round : state) {
            call(called);
        }
    };
    benchmark::RegisterBenchmark((name + '/' + std::to_string(size)).c_str(), run)
        ->Iterations(static_cast<benchmark::IterationCount>(calls));
}

/// `makeCall(size, place)` builds the operands of both contestants.
template <typename Ours, typename Theirs, typename MakeCall>
void compare(const std::string& name, Ours* ours, Theirs* theirs, MakeCall makeCall)
{
    for (const Place& place : kPlaces) {
        for (const std::size_t size : kSizes) {
            const auto made = [=] { return makeCall(size, place); };
            const std::string start = name + '/' + place.name;
            add(start + "/tovik", size, ours, made);
            add(start + "/libc", size, theirs, made);
        }
    }
}

/// A call with one text and further arguments; the text is hidden before each call.
template <typename... Further>
auto text_call(const std::string& text, const Place& place, Further... further)
{
    return [text = Placed(text, place.first), further...](auto* function) {
        char* operand = text.get();
        hide(operand);
        benchmark::DoNotOptimize(function(operand, further...));
    };
}

/// A call with two texts and further arguments.
template <typename... Further>
auto pair_call(
    const std::string& first, const std::string& second, const Place& place, Further... further)
{
    return [a = Placed(first, place.first), b = Placed(second, place.second), further...](
               auto* function) {
        const char* left = a.get();
        const char* right = b.get();
        hide(left);
        hide(right);
        benchmark::DoNotOptimize(function(left, right, further...));
    };
}

/// A call that moves blocks of `size` bytes over `distance` bytes. Calls use several small blocks
/// in turn, so that none waits for the bytes that the one before it has just written.
auto block_call(std::size_t size, std::size_t distance, const Place& place)
{
    const std::size_t places = size <= 4096 ? 16 : 1;
    const std::size_t stride = (2 * size + 127) / 64 * 64;
    return [memory = Placed(std::string(places * stride, 'x'), place.first), turn = std::size_t {0},
               places, stride, size, distance](auto* function) mutable {
        char* from = memory.get() + turn * stride;
        char* to = from + distance;
        turn = (turn + 1) % places;
        hide(from);
        hide(to);
        function(to, from, size);
        benchmark::ClobberMemory();
    };
}

void add_lengths_and_characters()
{
    compare("_strlen", static_cast<std::size_t (*)(Text)>(tovik::_strlen), std::strlen,
        [](std::size_t size, const Place& place) { return text_call(letters(size), place); });
    // The character stands where both contestants have to read the whole text.
    compare("_strchr", static_cast<Text (*)(Text, char)>(tovik::_strchr),
        static_cast<Text (*)(Text, int)>(std::strchr), [](std::size_t size, const Place& place) {
            return text_call(letters(size - 1) + kMark, place, kMark);
        });
    compare("_strrchr", static_cast<Text (*)(Text, char)>(tovik::_strrchr),
        static_cast<Text (*)(Text, int)>(std::strrchr), [](std::size_t size, const Place& place) {
            return text_call(kMark + letters(size - 1), place, kMark);
        });
}

void add_comparisons()
{
    using Whole = int (*)(Text, Text);
    using Bounded = int (*)(Text, Text, std::size_t);
    const auto whole = [](std::size_t size, const Place& place) {
        return pair_call(letters(size), letters(size), place);
    };
    const auto bounded = [](std::size_t size, const Place& place) {
        return pair_call(letters(size), letters(size), place, size);
    };
    compare("_strcmp", static_cast<Whole>(tovik::_strcmp), std::strcmp, whole);
    compare("_strncmp", static_cast<Bounded>(tovik::_strncmp), std::strncmp, bounded);
    compare("_memcmp", tovik::_memcmp, std::memcmp, bounded);
    compare("_strcasecmp", static_cast<Whole>(tovik::_strcasecmp), strcasecmp,
        [](std::size_t size, const Place& place) {
            return pair_call(letters(size), half_capital(letters(size)), place);
        });
    compare("_strncasecmp", static_cast<Bounded>(tovik::_strncasecmp), strncasecmp,
        [](std::size_t size, const Place& place) {
            return pair_call(letters(size), half_capital(letters(size)), place, size);
        });
}

/// The last occurrence, as it is found with the C library.
Text last_strstr(Text haystack, Text needle)
{
    Text last = nullptr;
    while ((haystack = std::strstr(haystack, needle)) != nullptr) {
        last = haystack++;
    }
    return last;
}

/// memmem() with the parameters of _memfind().
void* memfind(void* haystack, std::size_t size, const void* needle, std::size_t needleSize)
{
    return memmem(haystack, size, needle, needleSize);
}

using Search = Text (*)(Text, Text);

void add_searches()
{
    const auto ours = static_cast<Search>(tovik::_strstr);
    const auto theirs = static_cast<Search>(std::strstr);
    const auto atEnd
        = [](std::size_t size) { return letters(size - std::strlen(kNeedle)) + kNeedle; };
    compare("_strstr at the end", ours, theirs, [=](std::size_t size, const Place& place) {
        return text_call(atEnd(size), place, kNeedle);
    });
    compare("_strstr absent", ours, theirs, [](std::size_t size, const Place& place) {
        return text_call(letters(size), place, kNeedle);
    });
    compare("_memfind", tovik::_memfind, memfind, [=](std::size_t size, const Place& place) {
        return text_call(atEnd(size), place, size, kNeedle, std::strlen(kNeedle));
    });
    compare("_stristr", static_cast<Search>(tovik::_stristr), static_cast<Search>(strcasestr),
        [=](std::size_t size, const Place& place) {
            return text_call(half_capital(atEnd(size)), place, kNeedle);
        });
    compare("_strrstr", static_cast<Search>(tovik::_strrstr), last_strstr,
        [](std::size_t size, const Place& place) {
            return text_call(kNeedle + letters(size - std::strlen(kNeedle)), place, kNeedle);
        });
}

/// Text that resembles the needle everywhere and holds it nowhere. A comparison at each place takes
/// a time that grows with the product of their lengths.
void add_worst_cases()
{
    const std::pair<const char*, Search> searches[] = {{"_strstr", tovik::_strstr},
        {"_stristr", tovik::_stristr}, {"_strrstr", tovik::_strrstr},
        {"_memfind",
            [](Text text, Text needle) {
                return static_cast<Text>(tovik::_memfind(
                    const_cast<char*>(text), std::strlen(text), needle, std::strlen(needle)));
            }},
        {"strlen", [](Text text, Text) { return text + std::strlen(text); }}};
    for (const auto& [name, search] : searches) {
        for (const std::size_t size : kWorstSizes) {
            add(std::string("worst/") + name, size, search, [=] {
                return pair_call(
                    std::string(size, 'a'), std::string(size / 32 - 1, 'a') + 'b', kPlaces[0]);
            });
        }
    }
}

void add_blocks()
{
    compare("_memcpy", tovik::_memcpy, std::memcpy, [](std::size_t size, const Place& place) {
        return block_call(size, size + place.second, place);
    });
    compare("_memmove", tovik::_memmove, std::memmove, [](std::size_t size, const Place& place) {
        return block_call(size, size / 2 + place.second, place);
    });
}

} // namespace

int main(int argc, char** argv)
{
    add_lengths_and_characters();
    add_comparisons();
    add_searches();
    add_worst_cases();
    add_blocks();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
