// Owned.h: the one ownership idiom: the type of a variable says who releases what it holds.
#pragma once

#include <cstdio>
#include <memory>

/// Deleter that hands what is held to the function `Release`; it needs no room in the owner.
template <auto Release> struct ReleaseWith {
    template <typename T> void operator()(T* held) const noexcept { Release(held); }
};

/// A text from array-new, the allocation of every new string.
using OwnedText = std::unique_ptr<char[]>;

/// An open file, flushed and closed at the end.
using OwnedFile = std::unique_ptr<FILE, ReleaseWith<std::fclose>>;
