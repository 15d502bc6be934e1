#include "webapp/Options.h"

#include "util/Utility.h"

namespace {

const char* text_of(int count, char** list, const Option& option)
{
    const char* value = nullptr;
    return get_argument(count, list, option.name, &value) == 0 ? option.fallback : value;
}

std::optional<unsigned int> number_of(int count, char** list, const Option& option)
{
    unsigned int value = 0;
    if (get_argument(count, list, option.name, &value) != 0) {
        return value;
    }
    return option.fallback == nullptr
        ? std::nullopt
        : std::optional(static_cast<unsigned int>(string2number(option.fallback)));
}

} // namespace

ShellOptions read_options(int count, char** list)
{
    const auto text = [=](const Option& from) { return text_of(count, list, from); };
    const auto number = [=](const Option& from) { return number_of(count, list, from); };
    const auto flag = [=](const Option& from) { return has_argument(count, list, from.name) != 0; };
    return {
        .url = text(option("-url")),
        .userAgent = text(option("-useragent")),
        .icon = text(option("-icon")),
        .title = text(option("-title")),
        .store = text(option("-store")),
        .wait = number(option("-wait")).value_or(0),
        .rect = {.size = number(option("-size")),
            .fullscreen = flag(option("-fullscreen")),
            .position = number(option("-position"))},
        .resizing = flag(option("-resizing")),
        .system = flag(option("-system")),
    };
}
