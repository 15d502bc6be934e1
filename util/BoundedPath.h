// BoundedPath.h: a path joined from parts within the capacity of a buffer. Nothing is cut: a path
// that does not fit becomes empty and stays so.
#pragma once

#include <cstddef>

/// Joins a path in the caller's buffer, which must outlive it.
///
///     char path[kPathCapacity];
///     if (BoundedPath(path).append("/etc/").append(name).exists()) {
class BoundedPath {
public:
    /// Starts an empty path in `buffer`, which has at least one byte.
    BoundedPath(char* buffer, std::size_t capacity);

    /// Starts an empty path in an array.
    template <std::size_t Capacity>
    explicit BoundedPath(char (&buffer)[Capacity])
        : BoundedPath(buffer, Capacity)
    {
    }

    /// Goes on with the text that `buffer` holds.
    static BoundedPath continuing(char* buffer, std::size_t capacity);

    /// Appends `part`; null counts as empty.
    BoundedPath& append(const char* part);

    /// False once a part has not fitted; the buffer then holds the empty string.
    bool fits() const { return m_fits; }

    /// Whether the path fits and osFileExist() finds it.
    bool exists() const;

private:
    BoundedPath(char* buffer, std::size_t capacity, std::size_t length);

    char* m_buffer;
    std::size_t m_capacity;
    std::size_t m_length;
    bool m_fits = true;
};
