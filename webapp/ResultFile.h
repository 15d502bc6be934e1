// ResultFile.h: how the answer of the page reaches the host.
#pragma once

/// Replaces the content of the file at `path` by the answer of the run, without terminator or line
/// end: the response, when it is not empty and the status is "OK" or "CKR_OK"; else the status, or
/// "CKR_CANCEL" when the status is missing or empty. Empties a file that it cannot write whole, so
/// that no caller reads half an answer. Ignores a null or empty path and a file that it cannot
/// open.
void wa_handle_result(const char* path);
