// ResultFile.h: how the page's answer reaches the host.
#pragma once

/// Writes the answer of the run over the file at `path`, without terminator or line end: the
/// response, when it is not empty and the status is "OK" or "CKR_OK"; else the status, or
/// "CKR_CANCEL" when that is missing or empty. A file that cannot be written whole is emptied, so
/// that half an answer counts as none. A null or empty path, and a file that cannot be opened, are
/// passed over without a message.
void wa_handle_result(const char* path);
