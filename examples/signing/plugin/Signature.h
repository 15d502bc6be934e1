// Signature.h: signatures over the SHA-256 digest of a document, in the form that others verify:
// what a token answers, or DER for ECDSA.
#pragma once

#include "Session.h"

#include <string>

enum class Scheme { RsaPkcs1, RsaPss, Ecdsa };

/// Signs with a private key of the session's token. The PIN confirms the signature where the key
/// asks for that, and is wiped before the token signs. Throws Failure.
std::string sign_digest(Session& session, CK_OBJECT_HANDLE key, Scheme scheme,
    const std::string& digest, std::optional<Secret>& pin);
