// Tokens.h: the tokens that are inserted, with what can be seen of their keys before a log-in.
#pragma once

#include "Session.h"

#include <string>
#include <vector>

/// A key that can sign. Tokens hide private keys until the user has logged in, so that most of
/// these are seen by their public halves.
struct Key {
    std::string id; ///< for the page; unique on its token
    std::string label;
    std::string objectId; ///< the bytes that both halves have in common; may be empty
    CK_KEY_TYPE type = CKK_RSA; ///< or CKK_EC
};

struct Token {
    CK_SLOT_ID slot = 0;
    std::string id; ///< for the page: another token in the same slot has another one
    std::string label;
    CK_FLAGS flags = 0;
    unsigned long minimumPin = 0; ///< bytes
    std::vector<Key> keys;
};

/// All tokens that have been set up, and their keys, by their names. One that is pulled out
/// meanwhile is left out. Throws Failure.
std::vector<Token> read_tokens(const Module& module);

/// Throws Failure: CKR_TOKEN_NOT_PRESENT when the token is no longer the one in its slot, whose PIN
/// must not be tried on another.
void check_presence(const Module& module, const Token& token);

/// The private half of a key, once the user has logged in. Throws Failure: CKR_KEY_HANDLE_INVALID
/// when the token does not have it.
CK_OBJECT_HANDLE private_key(const Session& session, const Key& key);
