// Utility.h: the front door of this room beside the primitives. Byte strings and plain numbers
// only; no GTK types here.
#pragma once

#include "util/Arguments.h" // IWYU pragma: export
#include "util/Codecs.h" // IWYU pragma: export
#include "util/Desktop.h" // IWYU pragma: export
#include "util/Layout.h" // IWYU pragma: export
