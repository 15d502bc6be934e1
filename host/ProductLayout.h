// ProductLayout.h: which library a program loads: ROOT/bin/NAME loads ROOT/lib/libNAMEgui.so. Needs
// no run-time library of C++.
#pragma once

#include <climits>
#include <cstdio>
#include <optional>
#include <string_view>

/// Stores the path of the library that ROOT/bin/NAME loads. False when it does not fit; the buffer
/// then holds the beginning of the path.
inline bool store_library_path(
    char (&path)[PATH_MAX], std::string_view root, std::string_view name) noexcept
{
    return std::snprintf(path, sizeof path, "%.*s/lib/lib%.*sgui.so", static_cast<int>(root.size()),
               root.data(), static_cast<int>(name.size()), name.data())
        < PATH_MAX;
}

/// NAME of a file name libNAMEgui.so, and so of the program that loads the library; nothing for a
/// file name of another form.
constexpr std::optional<std::string_view> program_of_library(std::string_view file) noexcept
{
    constexpr std::string_view kPrefix = "lib";
    constexpr std::string_view kSuffix = "gui.so";
    if (!file.starts_with(kPrefix) || !file.ends_with(kSuffix)) {
        return std::nullopt;
    }
    return file.substr(kPrefix.size(), file.size() - kPrefix.size() - kSuffix.size());
}

/// The brand of a library with this file name: after "lib" up to 5 characters, before the first
/// "_", "x", "app", "gui" or "setup"; "tovik" when none are left.
constexpr std::string_view brand_of_library(std::string_view file) noexcept
{
    constexpr std::size_t kLongestBrand = 5;
    if (file.starts_with("lib")) {
        file.remove_prefix(3);
    }
    std::size_t length = kLongestBrand;
    for (const std::string_view end : {"_", "x", "app", "gui", "setup"}) {
        const std::size_t at = file.find(end);
        length = at < length ? at : length;
    }
    return length == 0 ? "tovik" : file.substr(0, length);
}
