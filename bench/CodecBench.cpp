// CodecBench.cpp: the codecs and the command-line splitter against GLib's functions for the same
// work, and URL decoding also against a plain single pass, over 1 MiB each. Each benchmark is
// named FUNCTION/CONTESTANT; one whose result is wrong is an error.
#include "util/Utility.h"

#include <benchmark/benchmark.h>
#include <glib.h>

#include <cstring>
#include <random>
#include <string>

namespace {

constexpr std::size_t kSize = std::size_t {1} << 20;

using GlibText = std::unique_ptr<char, ReleaseWith<g_free>>;
using GlibList = std::unique_ptr<char*[], ReleaseWith<g_strfreev>>;

/// What the decoders are to produce, and what they are to produce it from.
struct Sample {
    std::string plain;
    std::string text;
};

/// Text of `size` visible characters, the same in each run.
std::string characters(std::size_t size)
{
    std::mt19937 random(1);
    std::string text(size, ' ');
    for (char& c : text) {
        c = static_cast<char>('!' + random() % 94);
    }
    return text;
}

Sample escapes()
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    Sample sample = {characters(kSize / 3), {}};
    for (const char c : sample.plain) {
        sample.text += {'%', kDigits[c / 16], kDigits[c % 16]};
    }
    return sample;
}

Sample base64()
{
    Sample sample = {characters(kSize / 4 * 3), {}};
    const auto* bytes = reinterpret_cast<const guchar*>(sample.plain.data());
    sample.text = GlibText(g_base64_encode(bytes, sample.plain.size())).get();
    return sample;
}

// The decoders: each may work in place, and returns where the result is.

char* tovik_url_decode(char* text, std::size_t)
{
    url_decode(text);
    return text;
}

GlibText glib_url_decode(char* text, std::size_t)
{
    return GlibText(g_uri_unescape_string(text, nullptr));
}

int plain_digit(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char letter = static_cast<char>(c | 32);
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

/// The reference: each character is looked at once, in the obvious way.
char* plain_url_decode(char* text, std::size_t)
{
    char* to = text;
    for (const char* from = text; *from != 0; ++from) {
        const int high = *from == '%' ? plain_digit(from[1]) : -1;
        const int low = high < 0 ? -1 : plain_digit(from[2]);
        if (low >= 0) {
            *to++ = static_cast<char>(high * 16 + low);
            from += 2;
        } else {
            *to++ = *from == '+' ? ' ' : *from;
        }
    }
    *to = 0;
    return text;
}

char* tovik_base64_decode(char* text, std::size_t length)
{
    base64_decode(reinterpret_cast<unsigned char*>(text), length);
    return text;
}

char* glib_base64_decode(char* text, std::size_t length)
{
    return reinterpret_cast<char*>(g_base64_decode_inplace(text, &length));
}

/// Each round has a fresh copy of the text, made while the clock stands.
template <auto MakeSample, auto Decode> void decoding(benchmark::State& state)
{
    const Sample sample = MakeSample();
    const auto& [plain, text] = sample;
    std::string work = text;
    if (std::memcmp(&*Decode(work.data(), work.size()), plain.data(), plain.size()) != 0) {
        state.SkipWithError("the text is decoded wrongly");
    }
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        work = text;
        state.ResumeTiming();
        benchmark::DoNotOptimize(Decode(work.data(), work.size()));
        benchmark::ClobberMemory();
    }
}

std::string command_line()
{
    std::string text = "program";
    for (int i = 0; text.size() + 64 < kSize; ++i) {
        const std::string number = std::to_string(i);
        text += " -option" + number + " value" + number + " \"a quoted text\"";
    }
    return text;
}

OwnedList tovik_split(const std::string& text, int& count)
{
    return OwnedList(alloc_argument_list(text.c_str(), &count));
}

GlibList glib_split(const std::string& text, int& count)
{
    char** list = nullptr;
    g_shell_parse_argv(text.c_str(), &count, &list, nullptr);
    return GlibList(list);
}

/// The release of the list is timed too.
template <auto Split> void splitting(benchmark::State& state)
{
    const std::string text = command_line();
    int expected = 0;
    int count = 0;
    const OwnedList ours = tovik_split(text, expected);
    const auto theirs = Split(text, count);
    const auto last = static_cast<std::size_t>(expected) - 1;
    if (count != expected || std::strcmp(theirs[last], ours[last]) != 0) {
        state.SkipWithError("the contestants split differently");
    }
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(Split(text, count));
    }
}

} // namespace

BENCHMARK_TEMPLATE(decoding, escapes, tovik_url_decode)->Name("url_decode/tovik");
BENCHMARK_TEMPLATE(decoding, escapes, plain_url_decode)->Name("url_decode/plain");
BENCHMARK_TEMPLATE(decoding, escapes, glib_url_decode)->Name("url_decode/glib");
BENCHMARK_TEMPLATE(decoding, base64, tovik_base64_decode)->Name("base64_decode/tovik");
BENCHMARK_TEMPLATE(decoding, base64, glib_base64_decode)->Name("base64_decode/glib");
BENCHMARK_TEMPLATE(splitting, tovik_split)->Name("alloc_argument_list/tovik");
BENCHMARK_TEMPLATE(splitting, glib_split)->Name("alloc_argument_list/glib");
