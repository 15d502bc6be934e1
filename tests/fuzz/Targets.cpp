// Fuzz targets. FUZZ_TARGET names the function that a fuzzer calls; without it the program replays
// seeds through all FUZZ_TARGETS. Each function compares with a plain model or checks what must
// hold for every input, and aborts when it does not.
#include "bridge/InfoTexts.h"
#include "util/StringUtil.h"
#include "util/Utility.h"
#include "webapp/StartPage.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

/// A copy that ends with its allocation, so that a read beyond it is seen.
OwnedText exact(const std::string& text)
{
    return OwnedText(tovik::_strnew(text.c_str()));
}

/// Splits the input at the first NUL.
std::pair<std::string, std::string> halves(const std::string& input)
{
    const std::size_t end = std::min(input.find('\0'), input.size());
    return {input.substr(0, end), end < input.size() ? input.substr(end + 1).c_str() : ""};
}

std::string decoded_by_steps(const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && std::isxdigit(text[i + 1] & 0xFF)
            && std::isxdigit(text[i + 2] & 0xFF)) {
            result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            result += text[i] == '+' ? ' ' : text[i];
        }
    }
    return result.substr(0, result.find('\0'));
}

void url_decoding(const std::string& input)
{
    const std::string encoded = halves(input).first;
    const OwnedText text = exact(encoded);
    url_decode(text.get());
    require(text.get() == decoded_by_steps(encoded));
}

void action_urls(const std::string& input)
{
    const auto [url, name] = halves(input);
    const OwnedText uri = exact(url);
    const std::size_t scheme = url.find("://");
    const std::string path = scheme == std::string::npos ? "" : url.substr(scheme + 3);
    const OwnedText action(get_uri_action(uri.get()));
    require(action ? action.get() == path.substr(0, path.find('?')) && *action.get() != 0
                   : path.empty() || path[0] == '?');
    // The item begins after the first "?", or at the start, or after a "&".
    std::string query = "&";
    query += url.substr(url.find('?') + 1);
    const std::string start = '&' + name + '=';
    const std::size_t item = name.empty() ? std::string::npos : query.find(start);
    const OwnedText value(get_uri_argument(uri.get(), name.c_str()));
    require((value != nullptr) == (item != std::string::npos));
    if (value) {
        const std::string rest = query.substr(item + start.size());
        require(value.get() == decoded_by_steps(rest.substr(0, rest.find('&'))));
    }
}

void base64(const std::string& input)
{
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string expected;
    unsigned int held = 0;
    unsigned int bits = 0;
    for (const char c : input.substr(0, input.find('='))) {
        const std::size_t value = alphabet.find(static_cast<char>(c & 0x7F));
        if (value != std::string::npos) {
            held = held << 6 | static_cast<unsigned int>(value);
            bits += 6;
            if (bits >= 8) {
                bits -= 8;
                expected += static_cast<char>(held >> bits & 0xFF);
            }
        }
    }
    std::vector<unsigned char> data(input.begin(), input.end());
    const unsigned long length = base64_decode(data.data(), data.size());
    require(std::string(data.begin(), data.begin() + static_cast<long>(length)) == expected);
    require(input.empty() || data[length] == 0);
}

void command_lines(const std::string& input)
{
    const auto [line, name] = halves(input);
    int count = 0;
    const OwnedList list(alloc_argument_list(exact(line).get(), &count));
    require(list != nullptr && list[static_cast<std::size_t>(count)] == nullptr);
    const char* value = nullptr;
    unsigned int number = 7;
    const int found = get_argument(count, list.get(), name.c_str(), &value);
    require(found == get_argument(count, list.get(), name.c_str(), &number));
    require((found != 0) == (value != nullptr));
    require(found == 0 || number == static_cast<unsigned int>(string2number(value)));
    char digits[24];
    const long read = string2number(line.c_str());
    require(number2string(read, digits, sizeof digits) && string2number(digits) == read);
}

void info_texts(const std::string& input)
{
    const OwnedText text = exact(input);
    const std::size_t size = input.empty() ? 0 : static_cast<unsigned char>(input.back()) % 80;
    for (auto* format : {wa_format_client_info, wa_format_system_info}) {
        const OwnedText buffer(new char[size + 1]());
        if (format(text.get(), buffer.get(), size)) {
            require(std::strlen(buffer.get()) < size && std::strchr(buffer.get(), '/') != nullptr);
        } else {
            require(*buffer.get() == 0);
        }
    }
}

void searches(const std::string& input)
{
    const auto [text, part] = halves(input);
    const OwnedText haystack = exact(text);
    const OwnedText needle = exact(part);
    const char* const start = haystack.get();
    const auto at = [start, empty = part.empty()](std::size_t place) {
        return empty || place == std::string::npos ? nullptr : start + place;
    };
    const auto folded = [](std::string letters) {
        for (char& c : letters) {
            c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
        }
        return letters;
    };
    require(tovik::_strstr(start, needle.get()) == at(text.find(part)));
    require(tovik::_strrstr(start, needle.get()) == at(text.rfind(part)));
    require(tovik::_stristr(start, needle.get()) == at(folded(text).find(folded(part))));
}

void startup_page(const std::string& input)
{
    const auto [page, query] = halves(input);
    std::string expected = page;
    const std::size_t quote = page.find('"', page.find("STARTUP_ARG"));
    if (quote != std::string::npos && page.substr(quote, 2) == "\"\"") {
        expected.insert(quote + 1, query);
    }
    require(wa_insert_startup_argument(exact(page), exact(query).get()).get() == expected);
}

} // namespace

#ifdef FUZZ_TARGET
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FUZZ_TARGET(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
#else
/// Replays a file of seeds, a seed a line with "\0" for NUL: each through every target.
int main(int, char** argv)
{
    std::string seed;
    for (std::ifstream file(argv[1]); std::getline(file, seed);) {
        std::cout << seed << std::endl;
        for (std::size_t at = 0; (at = seed.find("\\0", at)) != std::string::npos;) {
            seed.replace(at, 2, 1, '\0');
        }
        for (auto* target : {FUZZ_TARGETS}) {
            target(seed);
        }
    }
}
#endif
