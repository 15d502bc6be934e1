#include "Secret.h"

#include <cstring>

Secret::Secret(Secret&& other) noexcept
{
    *this = static_cast<Secret&&>(other);
}

Secret& Secret::operator=(Secret&& other) noexcept
{
    if (this != &other) {
        assign(other.text());
        other.wipe();
    }
    return *this;
}

void Secret::assign(std::string_view text)
{
    wipe();
    if (text.size() <= m_text.size()) {
        m_size = text.copy(m_text.data(), text.size());
    }
}

void Secret::wipe()
{
    // Unlike memset, the compiler does not leave it out.
    explicit_bzero(m_text.data(), m_text.size());
    m_size = 0;
}
