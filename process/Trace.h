// Trace.h: the trace lines on standard output, written only under "-verbose".
#pragma once

#include <cstdint>

/// 1 when tracing is on, else 0. The first call looks for "-verbose" among the process arguments,
/// and its answer stays for the life of the process.
int wa_verbose();

/// Writes "App - label text" when tracing is on. A null counts as empty; two nulls write nothing.
void wa_trace(const char* label, const char* text);

/// Writes "App - label 0xHHHHLLLL" for a packed pair when tracing is on; a null label is empty.
void wa_trace(const char* label, std::uint32_t value);

/// Writes the label alone, as wa_trace() with a null text.
void wa_trace(const char* label);
