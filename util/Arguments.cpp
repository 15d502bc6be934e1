#include "util/Arguments.h"

#include "util/HexDigit.h"
#include "util/MemoryUtil.h"
#include "util/StringUtil.h"

#include <climits>
#include <cstdlib>

namespace {

struct Span {
    const char* begin;
    std::size_t length;
};

const char* skip_spaces(const char* text)
{
    while (*text == ' ') {
        ++text;
    }
    return text;
}

/// Reads the argument at `text` and moves `text` to the next one or to the terminator.
Span read_argument(const char*& text)
{
    text = skip_spaces(text);
    const bool quoted = *text == '"';
    if (quoted) {
        ++text;
    }
    const char end = quoted ? '"' : ' ';
    const char* begin = text;
    while (*text != 0 && *text != end) {
        ++text;
    }
    const Span argument = {begin, static_cast<std::size_t>(text - begin)};
    if (quoted && *text != 0) {
        ++text;
    }
    text = skip_spaces(text);
    return argument;
}

/// A list of `capacity` entries and the terminator, all null; null when memory runs out.
OwnedList new_list(std::size_t capacity)
{
    return OwnedList(static_cast<char**>(std::calloc(capacity + 1, sizeof(char*))));
}

/// Stores a copy in the entry; false when memory runs out.
bool store_copy(char*& entry, Span argument)
{
    entry = static_cast<char*>(std::malloc(argument.length + 1));
    if (entry == nullptr) {
        return false;
    }
    tovik::_memcpy(entry, argument.begin, argument.length);
    entry[argument.length] = 0;
    return true;
}

bool store_copies(char** entries, char** arguments, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!store_copy(entries[i], {arguments[i], tovik::_strlen(arguments[i])})) {
            return false;
        }
    }
    return true;
}

/// Index of the first argument equal to `name`, or -1.
int find_argument(int argc, char** argv, const char* name)
{
    for (int i = 0; i < argc; ++i) {
        if (tovik::_strcmp(argv[i], name) == 0) {
            return i;
        }
    }
    return -1;
}

/// The argument after the option at `index`; the empty string when the option has no value.
const char* value_after(int argc, char** argv, int index)
{
    const char* value = index + 1 < argc ? argv[index + 1] : nullptr;
    return value == nullptr || *value == '-' ? "" : value;
}

} // namespace

int get_argument(int argc, char** argv, const char* name, const char** value)
{
    *value = nullptr;
    const int index = find_argument(argc, argv, name);
    if (index < 0) {
        return 0;
    }
    *value = value_after(argc, argv, index);
    return 1;
}

int get_argument(int argc, char** argv, const char* name, unsigned int* value)
{
    const int index = find_argument(argc, argv, name);
    if (index < 0) {
        return 0;
    }
    if (value != nullptr) {
        *value = static_cast<unsigned int>(string2number(value_after(argc, argv, index)));
    }
    return 1;
}

int has_argument(int argc, char** argv, const char* name)
{
    return get_argument(argc, argv, name, static_cast<unsigned int*>(nullptr));
}

char** alloc_argument_list(const char* text, int* count)
{
    const char* const start = text == nullptr ? "" : text;
    std::size_t found = 0;
    for (const char* at = start; *at != 0; ++found) {
        read_argument(at);
    }
    OwnedList list = found > INT_MAX ? nullptr : new_list(found);
    if (!list) {
        return nullptr;
    }
    const char* at = start;
    for (std::size_t i = 0; i < found; ++i) {
        if (!store_copy(list[i], read_argument(at))) {
            return nullptr;
        }
    }
    *count = static_cast<int>(found);
    return list.release();
}

char** append_argument_list(char** first, int firstCount, char** second, int secondCount)
{
    const std::size_t head = firstCount < 1 ? 0 : static_cast<std::size_t>(firstCount);
    const std::size_t tail = secondCount < 1 ? 0 : static_cast<std::size_t>(secondCount);
    OwnedList list = new_list(head + tail);
    if (!list || !store_copies(list.get(), first, head)
        || !store_copies(list.get() + head, second, tail)) {
        return nullptr;
    }
    return list.release();
}

void free_argument_list(char** list)
{
    if (list == nullptr) {
        return;
    }
    for (char** entry = list; *entry != nullptr; ++entry) {
        std::free(*entry);
    }
    std::free(list);
}

std::uint32_t hex2num(const char* text)
{
    std::uint32_t number = 0;
    for (; *text != 0; ++text) {
        const int digit = hex_digit(*text);
        if (digit >= 0) {
            number = number * 16 + static_cast<std::uint32_t>(digit);
        }
    }
    return number;
}

long string2number(const char* text)
{
    if (text[0] == '0' && text[1] == 'x') {
        return static_cast<long>(hex2num(text + 2));
    }
    return std::strtol(text, nullptr, 10);
}
