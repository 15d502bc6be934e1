// Document.h: the document that is to be signed.
#pragma once

#include <functional>
#include <string>

/// Returns the SHA-256 digest, 32 bytes, of a regular file. `report` receives the percentage that
/// has been read, and may throw to stop. Throws Failure: CKR_DATA_INVALID and the system's words
/// when the file cannot be read.
std::string digest_of_document(const std::string& path, const std::function<void(int)>& report);
