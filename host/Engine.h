// Engine.h: what the host arranges with the engine and its main loop before a run.
#pragma once

#include "host/Library.h"

/// Has the main loop begin with cancelling every download before it writes: any frame can start
/// one, without the user's consent. The library is kept until then.
void refuse_downloads(Library& library);

/// Makes the directories in which the engine keeps data and caches of `program` with mode 0700
/// when they are missing; the engine itself would make them with the mode of the umask.
void make_private_storage(const Library& library, const char* program);

/// Ends this process when the process `caller` has ended, which alone could use the answer.
/// Neither 0 nor a kernel without pidfd_open() has an effect.
void end_with(const Library& library, int caller);
