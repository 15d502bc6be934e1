// PrimitiveBench.cpp: the primitives against the C library's functions of the same names, over
// texts and blocks of five sizes. Each benchmark is named FUNCTION/CONTESTANT/BYTES.
//
// Both contestants are called through a pointer whose value the compiler cannot know, and their
// operands are hidden from it before each call, so that it can neither replace a call by
// instructions of its own nor move it out of the loop.
#include "util/MemoryUtil.h"
#include "util/StringUtil.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kSizes[] = {8, 32, 256, 4096, std::size_t {1} << 20};

// Letters of the needle other than the last one occur in the haystacks, so that a search meets
// partial matches as it does in real texts.
constexpr char kNeedle[] = "tones!";
constexpr char kMark = '!';

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

/// Makes the compiler forget what the pointer is and what it knows of memory. In a register, for
/// g++ 12 may read a variable that it never stored when the operand may also be in memory, as it
/// may with DoNotOptimize().
template <typename T> void hide(T*& pointer)
{
    asm volatile("" : "+r"(pointer) : : "memory");
}

/// Runs `call(function, operands...)` as one benchmark; `makeCall(size)` builds its operands.
template <typename Function, typename MakeCall>
void add(const std::string& name, Function* function, std::size_t size, MakeCall makeCall)
{
    benchmark::RegisterBenchmark(
        (name + "/" + std::to_string(size)).c_str(), [=](benchmark::State& state) {
            auto call = makeCall(size);
            Function* called = function;
            hide(called);
            for ([[maybe_unused]] auto round : state) {
                call(called);
            }
        });
}

template <typename Ours, typename Theirs, typename MakeCall>
void compare(const std::string& name, Ours* ours, Theirs* theirs, MakeCall makeCall)
{
    for (const std::size_t size : kSizes) {
        add(name + "/tovik", ours, size, makeCall);
        add(name + "/libc", theirs, size, makeCall);
    }
}

/// A call with one text and a further argument; the text is hidden before each call.
template <typename... Further> auto text_call(std::string text, Further... further)
{
    return [text = std::move(text), further...](auto* function) {
        const char* operand = text.c_str();
        hide(operand);
        benchmark::DoNotOptimize(function(operand, further...));
    };
}

/// A call that moves blocks of `size` bytes over `distance` bytes. Calls use several small blocks
/// in turn, so that none waits for the bytes that the one before it has just written.
auto block_call(std::size_t size, std::size_t distance)
{
    const std::size_t places = size <= 4096 ? 16 : 1;
    const std::size_t stride = 2 * size + 64;
    return [memory = std::vector<char>(places * stride, 'x'), place = std::size_t {0}, places,
               stride, size, distance](auto* function) mutable {
        char* from = memory.data() + place * stride;
        char* to = from + distance;
        place = (place + 1) % places;
        hide(from);
        hide(to);
        function(to, from, size);
        benchmark::ClobberMemory();
    };
}

void add_lengths_and_characters()
{
    using Text = const char*;
    compare("_strlen", static_cast<std::size_t (*)(Text)>(tovik::_strlen), std::strlen,
        [](std::size_t size) { return text_call(letters(size)); });
    // The character stands where both contestants have to read the whole text.
    compare("_strchr", static_cast<Text (*)(Text, char)>(tovik::_strchr),
        static_cast<Text (*)(Text, int)>(std::strchr),
        [](std::size_t size) { return text_call(letters(size - 1) + kMark, kMark); });
    compare("_strrchr", static_cast<Text (*)(Text, char)>(tovik::_strrchr),
        static_cast<Text (*)(Text, int)>(std::strrchr),
        [](std::size_t size) { return text_call(kMark + letters(size - 1), kMark); });
    compare("_strcmp equal", static_cast<int (*)(Text, Text)>(tovik::_strcmp), std::strcmp,
        [](std::size_t size) {
            return [a = letters(size), b = letters(size)](auto* function) {
                Text first = a.c_str();
                Text second = b.c_str();
                hide(first);
                hide(second);
                benchmark::DoNotOptimize(function(first, second));
            };
        });
}

void add_searches()
{
    using Text = const char*;
    const auto ours = static_cast<Text (*)(Text, Text)>(tovik::_strstr);
    const auto theirs = static_cast<Text (*)(Text, Text)>(std::strstr);
    compare("_strstr at the end", ours, theirs, [](std::size_t size) {
        return text_call(letters(size - std::strlen(kNeedle)) + kNeedle, kNeedle);
    });
    compare("_strstr absent", ours, theirs,
        [](std::size_t size) { return text_call(letters(size), kNeedle); });
}

void add_blocks()
{
    compare("_memcpy", tovik::_memcpy, std::memcpy,
        [](std::size_t size) { return block_call(size, size + 32); });
    compare("_memmove", tovik::_memmove, std::memmove,
        [](std::size_t size) { return block_call(size, size / 2); });
}

} // namespace

int main(int argc, char** argv)
{
    add_lengths_and_characters();
    add_searches();
    add_blocks();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
