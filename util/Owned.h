// Owned.h: the ownership idiom: the type of a variable says how its value is released.
#pragma once

#include <cstdio>
#include <memory>
#include <unistd.h>

/// Deleter of a unique_ptr that calls `Release`; it adds no bytes to the owner.
template <auto Release> struct ReleaseWith {
    /// Releases what the owner holds.
    template <typename T> void operator()(T* held) const noexcept { Release(held); }
};

/// A text from array-new, which allocates every new string.
using OwnedText = std::unique_ptr<char[]>;

/// An open file, flushed and closed by its owner.
using OwnedFile = std::unique_ptr<FILE, ReleaseWith<std::fclose>>;

/// An open file descriptor, closed at the end; a negative number is none. It stays where it is
/// made.
class OwnedDescriptor {
public:
    /// Owns `descriptor`, which may be negative.
    explicit OwnedDescriptor(int descriptor) noexcept
        : m_descriptor(descriptor)
    {
    }
    ~OwnedDescriptor()
    {
        if (m_descriptor >= 0) {
            close(m_descriptor);
        }
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    /// The descriptor, borrowed.
    int get() const noexcept { return m_descriptor; }

    /// Whether there is one.
    explicit operator bool() const noexcept { return m_descriptor >= 0; }

private:
    int m_descriptor;
};
