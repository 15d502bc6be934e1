// Secret.h: a PIN in memory that is overwritten as soon as it is not needed any more. Its text is
// never in a std::string, whose copies nobody would find again.
#pragma once

#include <array>
#include <string_view>

class Secret {
public:
    Secret() = default;
    Secret(Secret&& other) noexcept;
    Secret& operator=(Secret&& other) noexcept;
    ~Secret() { wipe(); }

    /// Keeps a copy of the text; of one that is longer than any PIN, nothing.
    void assign(std::string_view text);
    void wipe();

    [[nodiscard]] std::string_view text() const { return {m_text.data(), m_size}; }

private:
    std::array<char, 255> m_text {};
    std::size_t m_size = 0;
};
