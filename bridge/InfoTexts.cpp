#include "bridge/InfoTexts.h"

#include "util/Owned.h"
#include "util/StringUtil.h"
#include "util/Utility.h"

namespace {

/// Characters kept free beside name and version: "/" and ".", each counted with its terminator.
constexpr std::size_t kSeparatorRoom = sizeof "/" + sizeof ".";

OwnedText decoded(const char* text)
{
    OwnedText copy(tovik::_strnew(text));
    if (copy) {
        url_decode(copy.get());
    }
    return copy;
}

/// Ends `text` at the first `separator` and returns what follows it, or null without one.
char* cut_at(char* text, char separator)
{
    char* found = tovik::_strchr(text, separator);
    if (found == nullptr) {
        return nullptr;
    }
    *found = 0;
    return found + 1;
}

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// Appends the character at `index` of the version when it is a digit from `lowest` on.
void append_digit(char* buffer, const char* version, std::size_t index, char lowest)
{
    if (index < tovik::_strlen(version) && version[index] >= lowest && version[index] <= '9') {
        tovik::_strncat(buffer, version + index, 1);
    }
}

/// Writes name, "/", and the start of the version as two groups: characters 0 and 1, then the two
/// from `minor` on, the first of which is at least `lowestMinor`.
bool write_info(char* buffer, std::size_t size, const char* name, const char* version,
    std::size_t minor, char lowestMinor)
{
    if (tovik::_strlen(name) + tovik::_strlen(version) + kSeparatorRoom >= size) {
        return false;
    }
    tovik::_strcat(tovik::_strcpy(buffer, name), "/");
    append_digit(buffer, version, 0, '1');
    append_digit(buffer, version, 1, '0');
    tovik::_strcat(buffer, ".");
    append_digit(buffer, version, minor, lowestMinor);
    append_digit(buffer, version, minor + 1, '0');
    return true;
}

} // namespace

bool wa_format_client_info(const char* text, char* buffer, std::size_t size)
{
    const OwnedText product = decoded(text);
    char* second = cut_at(product.get(), ';');
    char* version = cut_at(second, ';');
    return cut_at(version, ',') != nullptr
        && write_info(buffer, size, product.get(), version, 2, '1');
}

bool wa_format_system_info(const char* text, char* buffer, std::size_t size)
{
    const OwnedText system = decoded(text);
    if (cut_at(system.get(), ';') == nullptr) {
        return false;
    }
    char* end = tovik::_strrchr(system.get(), '.');
    if (end == nullptr) {
        return false;
    }
    do {
        ++end;
    } while (is_digit(*end));
    *end = 0;
    char* blank = tovik::_strrchr(system.get(), ' ');
    if (blank == nullptr) {
        return false;
    }
    *blank = 0;
    return write_info(buffer, size, system.get(), blank + 1, 3, '0');
}
