// Secrets.h: how a run keeps what the user enters from other programs.
#pragma once

/// Keeps this process and its children from leaving a core dump, in which a PIN could be read, by
/// the soft limit of its size, unless `debugged` or TOVIK_CORE is set to 1; and removes the
/// variables by which the engine would let any local process inspect a page.
void keep_secrets(bool debugged);
