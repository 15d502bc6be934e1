#include "util/BoundedPath.h"

#include "util/Layout.h"
#include "util/StringUtil.h"

BoundedPath::BoundedPath(char* buffer, std::size_t capacity)
    : BoundedPath(buffer, capacity, 0)
{
    *buffer = 0;
}

BoundedPath::BoundedPath(char* buffer, std::size_t capacity, std::size_t length)
    : m_buffer(buffer)
    , m_capacity(capacity)
    , m_length(length)
{
}

BoundedPath BoundedPath::continuing(char* buffer, std::size_t capacity)
{
    return {buffer, capacity, tovik::_strlen(buffer)};
}

BoundedPath& BoundedPath::append(const char* part)
{
    const std::size_t length = tovik::_strlen(part);
    m_fits = m_fits && length < m_capacity - m_length;
    if (m_fits) {
        tovik::_strcpy(m_buffer + m_length, part);
        m_length += length;
    } else {
        *m_buffer = 0;
    }
    return *this;
}

bool BoundedPath::exists() const
{
    return m_fits && osFileExist(m_buffer);
}
