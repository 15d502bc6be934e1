// ForeignLibrary.cpp: a shared library that is no web extension, of the kind that plug-ins bring
// along in their directory and that WebKit opens all the same.
#include "util/Export.h"

extern "C" TOVIK_EXPORT int foreign_sum(int a, int b) noexcept
{
    return a + b;
}
