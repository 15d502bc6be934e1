// Engine.h: what the host arranges with the engine and its main loop before a run.
#pragma once

#include "host/Library.h"

/// Ends this process when the process `caller` has ended, which alone could use the answer.
/// Neither 0 nor a kernel without pidfd_open() has an effect.
void end_with(const Library& library, int caller);
