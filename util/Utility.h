// Utility.h: the front door of this room, which every other room includes in place of the headers
// below. Byte strings and plain numbers only; no GTK types here. The primitives (StringUtil.h,
// MemoryUtil.h) with what they are built of (Blocks.h, TextBlocks.h), the owners (Owned.h) and the
// export macro stand beside it.
#pragma once

#include "util/Arguments.h" // IWYU pragma: export
#include "util/BoundedPath.h" // IWYU pragma: export
#include "util/Codecs.h" // IWYU pragma: export
#include "util/Desktop.h" // IWYU pragma: export
#include "util/FreshProcess.h" // IWYU pragma: export
#include "util/Layout.h" // IWYU pragma: export
