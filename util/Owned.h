// Owned.h: the ownership idiom: the type of a variable says how its value is released.
#pragma once

#include <cstdio>
#include <memory>

/// Deleter of a unique_ptr that calls `Release`; it adds no bytes to the owner.
template <auto Release> struct ReleaseWith {
    /// Releases what the owner holds.
    template <typename T> void operator()(T* held) const noexcept { Release(held); }
};

/// A text from array-new, which allocates every new string.
using OwnedText = std::unique_ptr<char[]>;

/// An open file, flushed and closed by its owner.
using OwnedFile = std::unique_ptr<FILE, ReleaseWith<std::fclose>>;
