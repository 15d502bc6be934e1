// Engine.h: what the host sets up in the engine and its main loop before a run.
#pragma once

#include "host/Library.h"

/// Makes every download be cancelled before it writes a file: any frame can start one without the
/// user's consent. Takes effect when the main loop starts; `library` is used until then.
void refuse_downloads(Library& library);

/// Makes the directories in which the engine keeps data and caches of `program`, with mode 0700, if
/// they are missing. The engine would make them with the mode that the umask leaves.
void make_private_storage(const Library& library, const char* program);

/// Ends this process as soon as the process `caller` has ended, because nobody else reads the
/// answer. Does nothing for a `caller` of 0 or on a kernel without pidfd_open().
void end_with(const Library& library, int caller);
