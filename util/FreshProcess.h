// FreshProcess.h: a child process that is left as a program started anew expects to find itself:
// the engine ignores signals and keeps descriptors, and neither is for the programs started here.
#pragma once

/// Notes the descriptors that the caller of Main wants inherited: those open now and not marked
/// close-on-exec. To be called before the engine opens its own.
void note_inherited_descriptors();

/// Between fork and exec: makes the child lead a session of its own, gives every signal its default
/// action, blocks none, and marks close-on-exec what was opened after
/// note_inherited_descriptors(); the standard streams stay. Where the kernel cannot mark a range
/// of descriptors, they stay as they are. Makes async-signal-safe calls only.
void become_fresh_process();
