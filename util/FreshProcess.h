// FreshProcess.h: gives a child process the signals and descriptors that a newly started program
// expects. The engine ignores signals and keeps descriptors open; child processes inherit neither.
#pragma once

/// Notes the descriptors that child processes inherit: those that are open now and not marked
/// close-on-exec. To be called before the engine opens its own.
void note_inherited_descriptors();

/// To be called between fork and exec. Makes the child lead a session of its own, gives every
/// signal its default action, blocks none, and marks close-on-exec the descriptors opened after
/// note_inherited_descriptors(), except the standard streams. A kernel that cannot mark a range of
/// descriptors leaves all unmarked. Makes async-signal-safe calls only.
void become_fresh_process();
