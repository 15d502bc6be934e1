// ParentHandle.h: the value of "--parent", which names a window of another program. Needs no
// run-time library of C++.
#pragma once

#include <charconv>
#include <string_view>

/// What a message says after a text that is no handle.
inline constexpr char kIsNoHandle[]
    = " is no handle; give x11:0xNUMBER, wayland:TOKEN or the number of an X window";

/// A handle, read.
struct ParentHandle {
    /// Which display has a window; none for a text that is no handle.
    enum class Kind : char { none, x11, wayland };

    Kind kind; // of the window's display
    unsigned int window; // id of an X window, never 0; 0 for the other kinds
    const char* token; // name under which a window of Wayland is exported; null for the others
};

/// The number that all the digits are in this base; 0 when they are none, or more than 32 bits.
inline unsigned int whole_number(std::string_view digits, int base) noexcept
{
    unsigned int number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, number, base);
    return error == std::errc() && rest == end ? number : 0;
}

/// Reads "x11:NUMBER", hexadecimal with or without "0x" as the desktop portals write it,
/// "wayland:TOKEN", or the bare number of an X window, decimal or with "0x" hexadecimal. `text`
/// lives as long as the result.
inline ParentHandle parent_handle(const char* text) noexcept
{
    // A longer message would break the connection to the compositor; tokens have some 40 bytes.
    constexpr std::size_t kLongestToken = 255;
    constexpr std::string_view kX11 = "x11:";
    constexpr std::string_view kWayland = "wayland:";
    using enum ParentHandle::Kind;
    std::string_view rest = text;
    if (rest.starts_with(kWayland)) {
        rest.remove_prefix(kWayland.size());
        const bool isToken = !rest.empty() && rest.size() <= kLongestToken;
        return {isToken ? wayland : none, 0, isToken ? rest.data() : nullptr};
    }
    const bool named = rest.starts_with(kX11);
    rest.remove_prefix(named ? kX11.size() : 0);
    const bool prefixed = rest.starts_with("0x");
    rest.remove_prefix(prefixed ? 2 : 0);
    const unsigned int window = whole_number(rest, named || prefixed ? 16 : 10);
    return {window == 0 ? none : x11, window, nullptr};
}
